// The cache of dependency summaries with 128 repositories of 100 updates: what reading its file
// costs against reading the same bytes as plain JSON, and how long those who store wait while the
// file is written.
#include <algorithm>
#include <atomic>
#include <thread>

#include <boost/json/monotonic_resource.hpp>

#include "AtomicFile.h"
#include "DependencyCache.h"
#include "FileSystem.h"
#include "Fixture.h"
#include "Json.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int repositories = 128;
constexpr int updatesOfEach = 100;
constexpr int rounds = 25;

std::string pathOf(int repository) {
    return fmt::format("/home/user/projects/team/repository-{}", repository);
}

DependencySummary makeSummary(Date checkedAt) {
    std::vector<DependencyUpdate> updates;
    for (int number = 0; number < updatesOfEach; ++number) {
        updates.push_back({.package = fmt::format("@organisation/component-{}", number),
                           .currentVersion = fmt::format("{}.{}.0", number % 7, number),
                           .latestVersion = fmt::format("{}.{}.1", number % 7 + 1, number),
                           .updateType = DependencyUpdateType::major});
    }
    return {.ecosystems = {{.project = "apps/web",
                            .manager = "pnpm",
                            .status = DependencyHealth::updatesAvailable,
                            .updates = std::move(updates)}},
            .checkedAt = checkedAt};
}

DependencyCacheFormat::Entries makeEntries(Date checkedAt) {
    DependencyCacheFormat::Entries entries;
    for (int repository = 0; repository < repositories; ++repository) {
        entries[pathOf(repository)] = {.fingerprint = "v17|" + std::string(600, 'f'),
                                       .checkedAt = checkedAt,
                                       .summary = makeSummary(checkedAt)};
    }
    return entries;
}

// The longest of the stores that are made from when the file begins to be written until it is
// there.
double longestStore(DependencyCache& cache, const DependencySummary& summary) {
    std::atomic<bool> written = false;
    cache.store(summary, pathOf(0), "v17|x");
    std::thread writing([&] {
        cache.drain();
        written = true;
    });
    double longest = 0;
    for (int repository = 0; !written; repository = (repository + 1) % repositories) {
        longest = std::max(longest,
                           secondsOf([&] { cache.store(summary, pathOf(repository), "v17|x"); }));
    }
    writing.join();
    return longest;
}

}  // namespace

int main() {
    const Folder folder;
    Engine engine(folder.path());
    const std::string file = folder.path() + "/cache.json";
    const auto entries = makeEntries(engine.loop.wallNow());
    const std::string bytes = DependencyCacheFormat::encoded(entries);
    writeFileAtomically(file, bytes, 0600);
    const DependencyCache::Tools tools{.loop = engine.loop, .queues = engine.queues};

    std::vector<double> loads;
    std::vector<double> parses;
    std::vector<double> stores;
    std::vector<double> writings;
    const DependencySummary summary = makeSummary(engine.loop.wallNow());
    for (int round = 0; round < rounds; ++round) {
        DependencyCache cache(file, tools);
        loads.push_back(secondsOf([&] { cache.lastKnownSummary(pathOf(0), true); }));
        parses.push_back(secondsOf([&] {
            boost::json::monotonic_resource storage;
            parsedJson(*readFile(file), &storage);
        }));
        cache.store(summary, pathOf(0), "v17|x");
        writings.push_back(secondsOf([&] { cache.drain(); }));
        stores.push_back(longestStore(cache, summary));
        writeFileAtomically(file, bytes, 0600);
    }
    Report report;
    report.note(fmt::format(
        "{:.1f} MB; reading {:.1f} ms, of that plain JSON {:.1f} ms; writing "
        "{:.1f} ms; longest store {:.3f} ms in the calmest round",
        static_cast<double>(bytes.size()) / 1e6, median(loads) * 1e3, median(parses) * 1e3,
        median(writings) * 1e3, *std::ranges::min_element(stores) * 1e3));
    report.atMost("reading the file, in milliseconds", median(loads) * 1e3, 30);
    report.atMost("reading the file / parsing it", median(loads) / median(parses), 3);
    report.atMost("longest of 128 stores / writing the file", median(stores) / median(writings),
                  0.1);
    return report.exitStatus();
}
