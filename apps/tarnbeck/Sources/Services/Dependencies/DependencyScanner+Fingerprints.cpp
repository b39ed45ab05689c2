#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include <fmt/format.h>
#include <sys/stat.h>

#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Fingerprints.h"
#include "DependencyScanner+Reports.h"
#include "FolderListing.h"
#include "SystemPaths.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

using Milliseconds = std::int64_t;

struct Attributes {
    bool isFolder;
    Milliseconds modified;  // rounded down
    Milliseconds modifiedTruncated;
};

// Of what a link leads to; absent where there is nothing.
std::optional<Attributes> attributesOf(const char* path) {
    struct stat information {};
    if (stat(path, &information) != 0) return std::nullopt;
    const timespec time = modificationTime(information);
    const Milliseconds rest = time.tv_nsec / 1'000'000;
    const Milliseconds floored = Milliseconds{time.tv_sec} * 1000 + rest;
    const bool roundsUp = floored < 0 && time.tv_nsec % 1'000'000 != 0;
    return Attributes{.isFolder = S_ISDIR(information.st_mode),
                      .modified = floored,
                      .modifiedTruncated = floored + (roundsUp ? 1 : 0)};
}

// The names in a folder, sorted; absent when it can't be listed.
std::optional<std::vector<std::string>> sortedEntries(const std::string& folder) {
    FolderListing listing;
    if (!listing.open(folder)) return std::nullopt;
    std::vector<std::string> names;
    while (const auto entry = listing.next()) names.emplace_back(entry->name);
    std::ranges::sort(names);
    return names;
}

// What each key of a project begins with: nothing in the root, else the relative path and "/".
std::string keyPrefix(const std::string& relativePath) {
    return relativePath == "." ? std::string() : relativePath + "/";
}

void appendEnvironmentTokens(std::vector<std::string>& tokens, const std::string& libraries,
                             const std::string& key) {
    const auto entries = sortedEntries(libraries);
    if (!entries) {
        tokens.push_back(fmt::format("python:{}:missing", key));
    } else if (entries->empty()) {
        tokens.push_back(fmt::format("python:{}:empty", key));
    } else {
        for (const std::string& entry : *entries) {
            tokens.push_back(pythonDirectoryToken(
                {.absolutePath = fmt::format("{}/{}/site-packages", libraries, entry),
                 .tokenKey = fmt::format("{}/{}/site-packages", key, entry)}));
        }
    }
}

void append(std::vector<std::string>& tokens, std::vector<std::string> more) {
    std::ranges::move(more, std::back_inserter(tokens));
}

}  // namespace

const std::vector<std::string_view> trackedNodeFiles = {
    "package.json", "pnpm-lock.yaml", "package-lock.json", "npm-shrinkwrap.json",
    "yarn.lock",    "bun.lock",       "bun.lockb"};

const std::vector<std::string_view> trackedPythonFiles = {
    "pyproject.toml", "requirements.txt", "requirements-dev.txt",
    "Pipfile",        "Pipfile.lock",     "poetry.lock",
    "uv.lock",        ".python-version",  ".venv/pyvenv.cfg",
    "venv/pyvenv.cfg"};

std::string structureFingerprint(const std::string& repoPath) {
    const auto root = attributesOf(repoPath.c_str());
    std::string fingerprint = fmt::format("root:{}", root ? root->modifiedTruncated : 0);
    FolderListing listing;
    if (!listing.open(repoPath)) return fingerprint;
    std::vector<std::string> folders;
    while (const auto entry = listing.next()) {
        if (!entry->isFolder || isHidden(repoPath, entry->name)) continue;
        if (!discoveryExcludes().contains(entry->name)) folders.emplace_back(entry->name);
    }
    std::ranges::sort(folders);
    std::string path = repoPath + "/";
    const std::size_t parentLength = path.size();
    for (const std::string& folder : folders) {
        path.replace(parentLength, std::string::npos, folder);
        if (isPackage(path)) continue;
        const auto attributes = attributesOf(path.c_str());
        fmt::format_to(std::back_inserter(fingerprint), "|{}:{}", folder,
                       attributes ? attributes->modifiedTruncated : 0);
    }
    return fingerprint;
}

std::vector<std::string> fingerprintTokens(const ProjectPlaces& places, const TrackedFiles& files) {
    const auto projects = standardizedSorted(places.projectPaths);
    std::vector<std::string> relativePaths;
    for (const std::string& project : projects) {
        relativePaths.push_back(
            relativeProjectPath({.projectPath = project, .repoPath = places.repoPath}));
    }
    std::vector<std::string> tokens;
    tokens.reserve(1 + projects.size() * files.names.size());
    tokens.push_back(
        fmt::format("{}-projects:{}", files.ecosystemPrefix, joined(relativePaths, ",")));
    for (std::size_t index = 0; index < projects.size(); ++index) {
        const std::string prefix =
            fmt::format("{}:{}", files.ecosystemPrefix, keyPrefix(relativePaths[index]));
        std::string path = projects[index] + "/";
        const std::size_t folderLength = path.size();
        for (const std::string_view name : files.names) {
            path.replace(folderLength, std::string::npos, name);
            const auto attributes = attributesOf(path.c_str());
            tokens.push_back(attributes ? fmt::format("{}{}:{}", prefix, name, attributes->modified)
                                        : fmt::format("{}{}:missing", prefix, name));
        }
    }
    return tokens;
}

std::string pythonDirectoryToken(const DirectoryToken& directory) {
    const auto attributes = attributesOf(directory.absolutePath.c_str());
    if (!attributes || !attributes->isFolder) {
        return fmt::format("python:{}:missing", directory.tokenKey);
    }
    return fmt::format("python:{}:{}", directory.tokenKey, attributes->modified);
}

std::vector<std::string> pythonEnvironmentFingerprintTokens(const ProjectPlaces& places) {
    std::vector<std::string> tokens;
    for (const std::string& project : standardizedSorted(places.projectPaths)) {
        const std::string prefix =
            keyPrefix(relativeProjectPath({.projectPath = project, .repoPath = places.repoPath}));
        for (const auto* name : {".venv/Lib/site-packages", "venv/Lib/site-packages"}) {
            tokens.push_back(pythonDirectoryToken(
                {.absolutePath = project + "/" + name, .tokenKey = prefix + name}));
        }
        for (const auto* name : {".venv/lib", "venv/lib"}) {
            appendEnvironmentTokens(tokens, project + "/" + name, prefix + name);
        }
    }
    return tokens;
}

std::string buildFingerprint(const std::string& repoPath, const DependencyMarkers& markers) {
    std::vector<std::string> tokens = {std::string(fingerprintScheme)};
    if (!markers.nodeProjects.empty()) {
        append(tokens,
               fingerprintTokens({.projectPaths = markers.nodeProjects, .repoPath = repoPath},
                                 {.names = trackedNodeFiles, .ecosystemPrefix = "node"}));
    }
    if (!markers.pythonProjects.empty()) {
        const ProjectPlaces places{.projectPaths = markers.pythonProjects, .repoPath = repoPath};
        append(tokens, fingerprintTokens(
                           places, {.names = trackedPythonFiles, .ecosystemPrefix = "python"}));
        append(tokens, pythonEnvironmentFingerprintTokens(places));
    }
    return joined(tokens, "|");
}

}  // namespace tarnbeck::DependencyScanner
