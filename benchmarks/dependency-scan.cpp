// The check of a repository in which nothing has changed, with 20 projects: against a plain loop
// that makes the same listings and asks for the same attributes.
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <dirent.h>
#include <sys/stat.h>

#include "DependencyScanner+Fingerprints.h"
#include "Fixture.h"
#include "MemoryFolder.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 2001;
constexpr int nodeProjects = 12;
constexpr int pythonProjects = 8;

void writeEmpty(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "{}";
}

// Half of the projects lie one level deeper; each Python project has an environment.
void makeRepository(const fs::path& root) {
    for (int number = 0; number < nodeProjects; ++number) {
        const fs::path project =
            root / (number % 2 ? "packages" : ".") / fmt::format("web{}", number);
        writeEmpty(project / "package.json");
        writeEmpty(project / "package-lock.json");
    }
    for (int number = 0; number < pythonProjects; ++number) {
        const fs::path project =
            root / (number % 2 ? "services" : ".") / fmt::format("api{}", number);
        writeEmpty(project / "requirements.txt");
        writeEmpty(project / ".venv/pyvenv.cfg");
        fs::create_directories(project / ".venv/lib/python3.11/site-packages/pip");
    }
}

class PlainLoop {
  public:
    PlainLoop(const std::string& root, const DependencyMarkers& markers)
        : root_(root), markers_(markers) {}

    void run() {
        ask(root_.c_str());
        list(root_.c_str(), "");
        for (const auto& project : markers_.nodeProjects) {
            for (const auto name : DependencyScanner::trackedNodeFiles) askIn(project, name);
        }
        for (const auto& project : markers_.pythonProjects) {
            for (const auto name : DependencyScanner::trackedPythonFiles) askIn(project, name);
        }
        for (const auto& project : markers_.pythonProjects) {
            askIn(project, ".venv/Lib/site-packages");
            askIn(project, "venv/Lib/site-packages");
            list(path(project, ".venv/lib"), "/site-packages");
            list(path(project, "venv/lib"), "/site-packages");
        }
    }

  private:
    const char* path(const std::string& folder, std::string_view name) {
        std::memcpy(path_, folder.data(), folder.size());
        path_[folder.size()] = '/';
        std::memcpy(path_ + folder.size() + 1, name.data(), name.size());
        path_[folder.size() + 1 + name.size()] = 0;
        return path_;
    }
    void ask(const char* file) {
        struct stat information {};
        if (stat(file, &information) == 0) sum_ = sum_ + information.st_mtim.tv_nsec;
    }
    void askIn(const std::string& folder, std::string_view name) { ask(path(folder, name)); }
    // Asks about each visible folder in a folder, or about what lies in it.
    void list(const char* folder, const char* below) {
        DIR* directory = opendir(folder);
        if (!directory) return;
        const std::size_t length = std::strlen(folder);
        char entryPath[4096];
        std::memcpy(entryPath, folder, length);
        entryPath[length] = '/';
        while (const dirent* entry = readdir(directory)) {
            if (entry->d_name[0] == '.' || entry->d_type != DT_DIR) continue;
            std::strcpy(entryPath + length + 1, entry->d_name);
            std::strcat(entryPath + length + 1, below);
            ask(entryPath);
        }
        closedir(directory);
    }

    const std::string& root_;
    const DependencyMarkers& markers_;
    char path_[4096];
    volatile long sum_ = 0;
};

}  // namespace

int main() {
    const MemoryFolder folder;
    const std::string root = folder.path() + "/repository";
    makeRepository(root);
    Engine engine(folder.path() + "/home");
    int children = 0;
    DependencyTools tools = engine.dependencyTools;
    tools.runCommand = [&children](const Command&) {
        ++children;
        return CommandResult{.terminationStatus = 0};
    };
    const DependencyScanner::Memory memory{.cache = engine.dependencyCache, .clock = engine.loop};
    const auto scan = [&] { DependencyScanner::scan(tools, memory, {.at = root}); };
    scan();
    const DependencyMarkers markers = DependencyScanner::cachedDependencyMarkers(memory, root);
    PlainLoop plain(root, markers);
    children = 0;
    std::vector<double> own;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        own.push_back(secondsOf(scan));
        bare.push_back(secondsOf([&] { plain.run(); }));
    }
    Report report;
    report.note(fmt::format("{} projects; {:.0f} us, the plain loop {:.0f} us",
                            markers.nodeProjects.size() + markers.pythonProjects.size(),
                            median(own) * 1e6, median(bare) * 1e6));
    report.atMost("check of an unchanged repository / a plain loop", median(own) / median(bare),
                  1.3);
    report.atMost("children of a check of an unchanged repository", children, 0);
    return report.exitStatus();
}
