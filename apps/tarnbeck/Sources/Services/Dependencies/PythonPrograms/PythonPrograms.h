// Small programs that the interpreter of a project's environment runs, as texts for `-c`. Each
// needs Python 3.8 or later, prints one JSON text, and says in its first lines what it takes.
#pragma once

#include <string_view>

namespace tarnbeck::PythonPrograms {

extern const std::string_view blocking;
extern const std::string_view origins;
extern const std::string_view pypi;

}  // namespace tarnbeck::PythonPrograms
