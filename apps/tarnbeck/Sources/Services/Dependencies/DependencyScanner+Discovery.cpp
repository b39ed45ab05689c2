#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

#include "DependencyScanner+Discovery.h"
#include "FileSystem.h"
#include "FileSystemWatcher.h"
#include "FolderListing.h"
#include "Paths.h"
#include "SystemPaths.h"
#include "Text.h"

namespace tarnbeck::DependencyScanner {
namespace {

constexpr std::string_view workspaceFile = "/pnpm-workspace.yaml";

std::string childPath(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.ends_with('/')) path += '/';
    return path += name;
}

bool anyExistsIn(const std::string& folder, const Names& names) {
    return std::ranges::any_of(
        names, [&](const std::string& name) { return exists(childPath(folder, name)); });
}

// Few names are looked for among very many files: their first letter tells nearly all apart.
class NameTest {
  public:
    explicit NameTest(const Names& names) : names_(names) {
        for (const std::string& name : names) {
            mayBegin_[static_cast<unsigned char>(name.front())] = true;
        }
    }
    bool operator()(std::string_view name) const {
        return !name.empty() && mayBegin_[static_cast<unsigned char>(name.front())] &&
               names_.contains(name);
    }

  private:
    const Names& names_;
    std::array<bool, 256> mayBegin_{};
};

// Goes through all folders below `root` but the excluded ones, and tells each file by its folder
// and its name.
template <class Visitor>
void walk(const std::string& root, Visitor visit) {
    const NameTest isExcluded(discoveryExcludes());
    FolderListing listing;
    std::vector<std::string> pending = {root};
    while (!pending.empty()) {
        const std::string folder = std::move(pending.back());
        pending.pop_back();
        if (!listing.open(folder)) continue;
        while (const auto entry = listing.next()) {
            if (!entry->isFolder) {
                visit(folder, entry->name);
            } else if (!isExcluded(entry->name)) {
                std::string path = childPath(folder, entry->name);
                if (!isPackage(path)) pending.push_back(std::move(path));
            }
        }
    }
}

// The folders of one kind of project. Several manifests in one folder lie behind each other.
class FoundProjects {
  public:
    FoundProjects(const std::string& root, const Names& manifestNames)
        : isManifest_(manifestNames) {
        if (anyExistsIn(root, manifestNames)) folders_.push_back(root);
    }
    void note(const std::string& folder, std::string_view name) {
        if (!isManifest_(name)) return;
        if (folders_.empty() || folders_.back() != folder) folders_.push_back(folder);
    }
    std::vector<std::string> takeSorted() {
        std::ranges::sort(folders_);
        const auto repeated = std::ranges::unique(folders_);
        folders_.erase(repeated.begin(), repeated.end());
        return std::move(folders_);
    }

  private:
    const NameTest isManifest_;
    std::vector<std::string> folders_;
};

using PathParts = std::vector<std::string_view>;

PathParts parts(std::string_view path) {
    PathParts found;
    while (true) {
        const std::size_t slash = path.find('/');
        found.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos) return found;
        path.remove_prefix(slash + 1);
    }
}

// Only "*" is special: it stands for any bytes.
bool partMatches(std::string_view part, std::string_view pattern) {
    std::size_t position = 0;
    std::size_t inPattern = 0;
    std::size_t star = std::string_view::npos;
    std::size_t behindStar = 0;
    while (position < part.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            behindStar = position;
        } else if (inPattern < pattern.size() && pattern[inPattern] == part[position]) {
            ++inPattern;
            ++position;
        } else if (star != std::string_view::npos) {
            inPattern = star + 1;
            position = ++behindStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

bool matchesPartByPart(const PathParts& path, const PathParts& pattern) {
    return path.size() == pattern.size() && std::ranges::equal(path, pattern, partMatches);
}

// For patterns with "**". matches[i]: whether the pattern's rest, which grows from its end, matches
// the path from part i on. So that no pattern takes longer than its length times that of the path.
bool matchesAcrossParts(const PathParts& path, const PathParts& pattern) {
    std::vector<bool> matches(path.size() + 1, false);
    matches.back() = true;
    for (auto part = pattern.rbegin(); part != pattern.rend(); ++part) {
        std::vector<bool> next(path.size() + 1, false);
        for (std::size_t index = path.size() + 1; index-- > 0;) {
            const bool isLast = index == path.size();
            if (*part == "**") {
                next[index] = matches[index] || (!isLast && next[index + 1]);
            } else if (!isLast) {
                next[index] = matches[index + 1] && partMatches(path[index], *part);
            }
        }
        matches = std::move(next);
    }
    return matches.front();
}

// A pattern, taken apart. Views into its text.
class Glob {
  public:
    explicit Glob(std::string_view pattern)
        : parts_(parts(pattern)), crossesParts_(std::ranges::find(parts_, "**") != parts_.end()) {}

    bool matches(const PathParts& path) const {
        return crossesParts_ ? matchesAcrossParts(path, parts_) : matchesPartByPart(path, parts_);
    }

  private:
    PathParts parts_;
    bool crossesParts_;
};

// The patterns of a workspace, taken apart once for all projects. The last one that matches
// decides, so of equal ones only the last is kept, and they are tried from the end.
class WorkspacePatterns {
  public:
    explicit WorkspacePatterns(const std::vector<std::string>& patterns) {
        std::unordered_set<std::string_view> known;
        for (auto pattern = patterns.rbegin(); pattern != patterns.rend(); ++pattern) {
            std::string_view text = *pattern;
            const bool negates = text.starts_with('!');
            if (negates) text.remove_prefix(1);
            if (text.empty() || !known.insert(text).second) continue;
            fromLast_.push_back({.pattern = Glob(text), .negates = negates});
        }
    }

    bool include(std::string_view path) const {
        const PathParts pathParts = parts(path);
        const auto decisive = std::ranges::find_if(
            fromLast_, [&](const Entry& entry) { return entry.pattern.matches(pathParts); });
        return decisive != fromLast_.end() && !decisive->negates;
    }

  private:
    struct Entry {
        Glob pattern;
        bool negates;
    };
    std::vector<Entry> fromLast_;
};

}  // namespace

const Names& nodeManifestNames() {
    static const Names names = {"package.json"};
    return names;
}

const Names& pythonManifestNames() {
    static const Names names = {"pyproject.toml", "requirements.txt", "requirements-dev.txt",
                                "Pipfile",        "poetry.lock",      "uv.lock"};
    return names;
}

const Names& discoveryExcludes() {
    static const Names names = [] {
        Names all = FileSystemWatcher::defaultExcludes();
        all.insert(".git");
        return all;
    }();
    return names;
}

std::string relativeProjectPath(const ProjectPlace& place) {
    std::string project = standardized(place.projectPath);
    const std::string root = standardized(place.repoPath);
    if (project == root) return ".";
    if (project.starts_with(root + "/")) return project.substr(root.size() + 1);
    return project;
}

std::vector<std::string> discoverProjects(const std::string& repoPath, const Names& manifestNames) {
    const std::string root = standardized(repoPath);
    FoundProjects found(root, manifestNames);
    walk(root, [&](const auto& folder, std::string_view name) { found.note(folder, name); });
    return found.takeSorted();
}

DependencyMarkers discoverMarkers(const std::string& repoPath) {
    const std::string root = standardized(repoPath);
    FoundProjects node(root, nodeManifestNames());
    FoundProjects python(root, pythonManifestNames());
    walk(root, [&](const auto& folder, std::string_view name) {
        node.note(folder, name);
        python.note(folder, name);
    });
    return {.nodeProjects = filterNodeProjectsToWorkspacePackages(node.takeSorted(), repoPath),
            .pythonProjects = python.takeSorted()};
}

std::vector<std::string> pnpmWorkspacePackagePatterns(const std::string& repoPath) {
    const Result<std::string> bytes =
        readFile(repoPath + std::string(workspaceFile), largestManifest);
    if (!bytes) return {};
    return packagePatternsIn(decodedUtf8(*bytes));
}

std::vector<std::string> packagePatternsIn(std::string_view workspaceText) {
    std::vector<std::string> patterns;
    bool isInPackages = false;
    while (!workspaceText.empty()) {
        const std::string_view line = trimmingBlanksAndTabs(takingLineAtNewline(workspaceText));
        if (line == "packages:") {
            isInPackages = true;
        } else if (!isInPackages || line.empty() || line.starts_with('#')) {
            continue;
        } else if (line.starts_with("- ")) {
            const std::string_view entry = trimmingAnyOf(line.substr(2), " '\"");
            if (!entry.empty()) patterns.emplace_back(entry);
        } else {
            break;
        }
    }
    return patterns;
}

std::vector<std::string> filterNodeProjectsToWorkspacePackages(std::vector<std::string> projects,
                                                               const std::string& repoPath) {
    if (!exists(repoPath + std::string(workspaceFile))) return projects;
    const auto patterns = pnpmWorkspacePackagePatterns(repoPath);
    if (patterns.empty()) return projects;
    const WorkspacePatterns members(patterns);
    std::erase_if(projects, [&](const std::string& project) {
        const std::string path =
            relativeProjectPath({.projectPath = project, .repoPath = repoPath});
        return path != "." && !members.include(path);
    });
    return projects;
}

bool globMatch(const GlobQuestion& question) {
    return Glob(question.pattern).matches(parts(question.path));
}

}  // namespace tarnbeck::DependencyScanner
