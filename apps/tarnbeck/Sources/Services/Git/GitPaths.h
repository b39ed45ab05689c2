// How git writes the names of files, and how it wants to be told of one. Names are bytes, in any
// encoding or none. Pure, any thread.
#pragma once

#include <string>
#include <string_view>

namespace tarnbeck::GitPaths {

// The name that git means by a path in its output: git puts a name that holds special characters
// between quotes and writes those as in C. What is not quoted, or not as git does it, is the name
// itself.
std::string unquoted(std::string_view printed);

// The path specification that means the file of this name and no other.
std::string specificationOf(std::string_view name);

}  // namespace tarnbeck::GitPaths
