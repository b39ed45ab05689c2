// Beginning to watch 200 repositories with 20,000 folders, half of them below excluded names:
// against a plain loop that walks the same folders and sets the same watches. (Linux only.)
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "BareWatcher.h"
#include "FileSystemWatcher.h"
#include "MemoryFolder.h"
#include "Report.h"
#include "SystemFileEvents.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

namespace fs = std::filesystem;

constexpr int repositories = 200;
constexpr int rounds = 15;
// Names that no user excludes, for the folders above the repositories.
const std::set<std::string, std::less<>>& excludes() {
    static const auto names = [] {
        auto all = FileSystemWatcher::defaultExcludes();
        all.erase("tmp");
        return all;
    }();
    return names;
}

// 100 folders, of which 50 lie below "node_modules", itself among them.
std::string makeRepository(const std::string& folder, int number) {
    const fs::path repository = fs::path(folder) / ("repository" + std::to_string(number));
    for (const auto* name : {"refs/heads/topic", "refs/remotes/origin", "refs/tags", "hooks",
                             "info", "logs/refs/heads", "objects/info", "objects/pack"}) {
        fs::create_directories(repository / ".git" / name);
    }
    for (int index = 0; index < 30; ++index) {
        const std::string part = std::to_string(index % 5);
        const fs::path source = repository / ("source" + part) / ("module" + std::to_string(index));
        fs::create_directories(source);
        for (int file = 0; file < 5; ++file) std::ofstream(source / std::to_string(file));
    }
    for (int index = 0; index < 49; ++index) {
        fs::create_directories(repository / "node_modules" / ("package" + std::to_string(index)));
    }
    return repository;
}

std::size_t ownWatches() {
    std::size_t count = 0;
    for (const auto& each : fs::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream lines(each.path());
        for (std::string line; std::getline(lines, line);) count += line.starts_with("inotify wd:");
    }
    return count;
}

double seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

struct Measurement {
    double seconds = 1e9;
    std::size_t watches = 0;
};

void measureBare(const std::vector<std::string>& roots, Measurement& best) {
    const FileDescriptor inotify(inotify_init1(IN_CLOEXEC));
    const auto start = std::chrono::steady_clock::now();
    std::size_t watches = 0;
    for (const std::string& root : roots) watches += watchBarely(inotify, root, excludes());
    best = {std::min(best.seconds, seconds(start)), watches};
}

void measureOwn(const std::vector<std::string>& roots, Measurement& best) {
    const auto events = makeFileEvents();
    const auto start = std::chrono::steady_clock::now();
    const auto stream = events->open(
        {.roots = roots, .excludes = excludes(), .deliver = [](const FileEventBatch&) {}});
    best = {std::min(best.seconds, seconds(start)), ownWatches()};
}

}  // namespace

int main() {
    const MemoryFolder folder;
    std::vector<std::string> roots;
    for (int number = 0; number < repositories; ++number) {
        roots.push_back(makeRepository(folder.path(), number));
    }
    Measurement bare;
    Measurement own;
    for (int round = 0; round < rounds; ++round) {
        measureBare(roots, bare);
        measureOwn(roots, own);
    }
    // Those above the roots, of which each is watched for its own moves.
    const auto above = std::count(folder.path().begin(), folder.path().end(), '/');
    const auto watches = static_cast<std::ptrdiff_t>(own.watches) - above;
    Report report;
    report.note(fmt::format("{} watches in {:.1f} ms; the plain loop {} in {:.1f} ms", own.watches,
                            own.seconds * 1e3, bare.watches, bare.seconds * 1e3));
    report.atMost("beginning to watch / a plain loop", own.seconds / bare.seconds, 1.2);
    report.atMost("watches below excluded folders",
                  static_cast<double>(watches - static_cast<std::ptrdiff_t>(bare.watches)), 0);
    return report.exitStatus();
}
