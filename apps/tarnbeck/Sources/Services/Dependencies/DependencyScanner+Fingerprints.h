// Texts that change when the answer of a dependency check may have changed: made of names, of
// existence and of modification times in milliseconds. No file is opened. What can't be read counts
// as 0 or as missing. Blocking; any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "DependencyMarkers.h"

namespace tarnbeck::DependencyScanner {

// The first token of each fingerprint; to be raised with every change of what fingerprints cover.
inline constexpr std::string_view fingerprintScheme = "v17";

extern const std::vector<std::string_view> trackedNodeFiles;
extern const std::vector<std::string_view> trackedPythonFiles;

// Tells whether the list of projects may have changed: one listing of the root, and one question
// for each visible folder in it.
std::string structureFingerprint(const std::string& repoPath);

struct TrackedFiles {
    std::span<const std::string_view> names;
    std::string_view ecosystemPrefix;
};
std::vector<std::string> fingerprintTokens(const ProjectPlaces& places, const TrackedFiles& files);

struct DirectoryToken {
    std::string absolutePath;
    std::string tokenKey;
};
std::string pythonDirectoryToken(const DirectoryToken& directory);
std::vector<std::string> pythonEnvironmentFingerprintTokens(const ProjectPlaces& places);

// Tells whether a finished check still holds: manifests, lockfiles, and Python's environments.
std::string buildFingerprint(const std::string& repoPath, const DependencyMarkers& markers);

}  // namespace tarnbeck::DependencyScanner
