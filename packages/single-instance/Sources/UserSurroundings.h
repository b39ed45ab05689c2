// What the system knows of the user and of this program.
#pragma once

#include <string>

namespace single_instance {

// The user's home, without a trailing slash.
std::string userHome();

// Where applications keep their files: on Linux $XDG_DATA_HOME where that is an absolute path, else
// .local/share below the home; on macOS what the system says.
std::string applicationSupportFolder();

// Empty where the program lies in no bundle, or in one without an identifier.
std::string mainBundleIdentifier();

std::string processName();

}  // namespace single_instance
