// Tools that tests play: a Python environment's interpreter, and uv below the home, which is the
// first place where it is looked for.
#pragma once

#include <filesystem>
#include <string>

#include "TemporaryFolder.h"

namespace tarnbeck::testing {

inline std::string writeProgram(const TemporaryFolder& folder, const std::string& name,
                                const std::string& script) {
    const std::string path = folder.write(name, "#!/bin/sh\n" + script);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

// The environment of the project `name`. Its pip says that these are outdated, and nothing else.
inline std::string writeEnvironment(const TemporaryFolder& folder, const std::string& name,
                                    const std::string& outdatedJson) {
    return writeProgram(
        folder, name + "/.venv/bin/python3",
        "case \"$*\" in *--outdated*) echo '" + outdatedJson + "';; *) exit 1;; esac\n");
}

// An environment that answers no question.
inline std::string writeBrokenEnvironment(const TemporaryFolder& folder, const std::string& name) {
    return writeProgram(folder, name + "/.venv/bin/python3", "exit 1\n");
}

inline std::string writeUv(const TemporaryFolder& folder, const std::string& script) {
    return writeProgram(folder, ".local/bin/uv", script);
}

}  // namespace tarnbeck::testing
