// Looking for projects in a tree of 200,000 files, half of them below excluded folders: against a
// plain loop that reads the same folders.
#include <cstring>
#include <filesystem>
#include <fstream>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "DependencyScanner+Discovery.h"
#include "FileDescriptor.h"
#include "MemoryFolder.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 15;
constexpr int folders = 2'000;  // with 50 files each, and as many below excluded names

void fill(const fs::path& folder) {
    fs::create_directories(folder);
    for (int file = 0; file < 50; ++file) {
        const std::string path = folder / fmt::format("component-{}.ts", file);
        const FileDescriptor made(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

void makeTree(const fs::path& root) {
    for (int number = 0; number < folders; ++number) {
        const fs::path package =
            root / fmt::format("packages/area{}/package{}", number % 20, number);
        fill(package / "source");
        fill(package / "node_modules" / "dependency");
        if (number % 10 == 0) std::ofstream(package / "package.json");
    }
}

// As plain as it gets: full paths, and a comparison with each name where that matters.
class PlainWalk {
  public:
    std::size_t entries = 0;
    std::size_t manifests = 0;

    void walk(const std::string& folder) {
        DIR* directory = opendir(folder.c_str());
        if (!directory) return;
        while (const dirent* entry = readdir(directory)) {
            const char* name = entry->d_name;
            if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
            ++entries;
            if (entry->d_type != DT_DIR) {
                if (std::strcmp(name, "package.json") == 0) ++manifests;
            } else if (!isExcluded(name)) {
                walk(folder + "/" + name);
            }
        }
        closedir(directory);
    }

  private:
    static bool isExcluded(const char* name) {
        for (const std::string& excluded : DependencyScanner::discoveryExcludes()) {
            if (excluded == name) return true;
        }
        return false;
    }
};

}  // namespace

int main() {
    const MemoryFolder folder;
    makeTree(folder.path());
    std::vector<double> own;
    std::vector<double> bare;
    std::size_t projects = 0;
    PlainWalk plain;
    for (int round = 0; round < rounds; ++round) {
        own.push_back(secondsOf([&] {
            projects = DependencyScanner::discoverMarkers(folder.path()).nodeProjects.size();
        }));
        plain = {};
        bare.push_back(secondsOf([&] { plain.walk(folder.path()); }));
    }
    Report report;
    report.note(fmt::format("{} projects; {:.1f} ms, the plain walk over {} entries {:.1f} ms",
                            projects, median(own) * 1e3, plain.entries, median(bare) * 1e3));
    report.atLeast("projects found / manifests",
                   static_cast<double>(projects) / static_cast<double>(plain.manifests), 1);
    report.atMost("discovery of both kinds of projects / one plain walk",
                  median(own) / median(bare), 1.2);
    return report.exitStatus();
}
