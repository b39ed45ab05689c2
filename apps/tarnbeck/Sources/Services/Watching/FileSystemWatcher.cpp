#include "FileSystemWatcher.h"

namespace tarnbeck {

const std::set<std::string, std::less<>>& FileSystemWatcher::defaultExcludes() {
    static const std::set<std::string, std::less<>> names = {
        "index.lock",  "node_modules", ".build",      ".swiftpm",      "DerivedData", ".DS_Store",
        "Pods",        ".gradle",      "__pycache__", ".pytest_cache", ".mypy_cache", ".tox",
        ".venv",       "venv",         ".env",        "dist",          "build",       ".next",
        ".nuxt",       ".output",      ".cache",      ".turbo",        ".vercel",     "coverage",
        ".nyc_output", "tmp",          "temp",        ".tmp",
    };
    return names;
}

}  // namespace tarnbeck
