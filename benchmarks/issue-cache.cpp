// The cache of issues and pull requests with 200 repositories of 100 and 100: what a store costs
// against writing the same bytes, how often a burst of stores writes, and how long a reader waits
// meanwhile.
#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "AtomicFile.h"
#include "FileSystem.h"
#include "Fixture.h"
#include "GitHubIssueCache.h"
#include "Report.h"
#include "Timing.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

using GitHubIssueCacheFormat::CacheEntry;
using GitHubIssueCacheFormat::Entries;

constexpr int repositories = 200;
constexpr int rounds = 15;

std::string pathOf(int repository) {
    return fmt::format("/home/user/projects/team/repository-{}", repository);
}

template <class Item>
Item itemOf(int number, std::string_view kind) {
    Item item;
    item.id = item.number = 1000 + number;
    item.title =
        fmt::format("Windows build fails with \"{}\" when the path has blanks in it", number);
    item.labels = {"bug", "help wanted", "platform: windows"};
    item.author = fmt::format("contributor-{}", number % 37);
    item.createdAt = "2026-02-01T08:00:00Z";
    item.updatedAt = "2026-02-02T09:00:00Z";
    item.url = fmt::format("https://github.com/organisation/repository/{}/{}", kind, 1000 + number);
    return item;
}

GitHubRepositoryData makeData() {
    std::vector<GitHubIssue> issues;
    std::vector<GitHubPullRequest> pullRequests;
    for (int number = 0; number < 100; ++number) {
        issues.push_back(itemOf<GitHubIssue>(number, "issues"));
        pullRequests.push_back(itemOf<GitHubPullRequest>(number, "pull"));
    }
    return {.issues = std::move(issues), .pullRequests = std::move(pullRequests)};
}

Entries makeEntries(Date fetchedAt) {
    Entries entries;
    for (int repository = 0; repository < repositories; ++repository) {
        entries[pathOf(repository)] = {.fetchedAt = fetchedAt, .data = makeData()};
    }
    return entries;
}

// Counts the tasks that its serial queues run.
class CountingQueues : public WorkQueues {
  public:
    void userInitiated(Task task) override { queues_.userInitiated(std::move(task)); }
    void utility(Task task) override { queues_.utility(std::move(task)); }
    std::shared_ptr<SerialQueue> serial(std::string label) override {
        return std::make_shared<Line>(queues_.serial(std::move(label)), count);
    }

    std::atomic<int> count = 0;

  private:
    class Line : public SerialQueue {
      public:
        Line(std::shared_ptr<SerialQueue> line, std::atomic<int>& count)
            : line_(std::move(line)), count_(count) {}
        void post(Task task) override {
            line_->post([task = std::move(task), &count = count_] {
                ++count;
                task();
            });
        }
        void drain() override { line_->drain(); }

      private:
        std::shared_ptr<SerialQueue> line_;
        std::atomic<int>& count_;
    };

    ThreadedWorkQueues queues_;
};

std::string encoded(const Entries& entries) {
    GitHubIssueCacheFormat::Encoder encoder;
    std::string text;
    for (const std::string_view piece : encoder.pieces(entries)) text += piece;
    return text;
}

// Both on a queue, and thus at the same priority.
void measureStore(Report& report, GitHubIssueCache& cache, const GitHubRepositoryData& data,
                  const std::string& bytes, const std::string& otherFile) {
    ThreadedWorkQueues queues;
    const auto queue = queues.serial("bytes");
    std::vector<double> stores;
    std::vector<double> writes;
    for (int round = 0; round < rounds; ++round) {
        stores.push_back(secondsOf([&] {
            cache.store(data, pathOf(round));
            cache.drain();
        }));
        writes.push_back(secondsOf([&] {
            queue->post([&] { writeFileAtomically(otherFile, bytes, 0600); });
            queue->drain();
        }));
    }
    report.atMost("store until on disk / writing the same bytes", median(stores) / median(writes),
                  1.5);
    report.note(fmt::format("{:.1f} ms, and {:.1f} ms for the bytes", median(stores) * 1e3,
                            median(writes) * 1e3));
}

void measureBurst(Report& report, GitHubIssueCache& cache, const GitHubRepositoryData& data,
                  std::atomic<int>& writings) {
    cache.drain();
    writings = 0;
    const double seconds = secondsOf([&] {
        for (int repository = 0; repository < repositories; ++repository) {
            cache.store(data, pathOf(repository));
        }
    });
    cache.drain();
    report.atMost("writings of a burst of 200 stores", writings.load(), 2);
    report.note(fmt::format("the 200 calls took {:.2f} ms", seconds * 1e3));
}

// The longest read from when a store was asked for until it is on disk.
double longestRead(GitHubIssueCache& cache, const GitHubRepositoryData& data) {
    std::atomic<bool> written = false;
    cache.store(data, pathOf(0));
    std::thread waiting([&] {
        cache.drain();
        written = true;
    });
    double longest = 0;
    for (int repository = 0; !written; repository = (repository + 1) % repositories) {
        longest = std::max(longest, secondsOf([&] { cache.entry(pathOf(repository)); }));
    }
    waiting.join();
    return longest;
}

// Who had to wait for the encoding or for the disk would do so in every round; a reader that the
// system merely stops for a while is not stopped in the calmest of them.
void measureReads(Report& report, GitHubIssueCache& cache, const GitHubRepositoryData& data,
                  double encoding) {
    double calmest = longestRead(cache, data);
    for (int round = 1; round < rounds; ++round) {
        calmest = std::min(calmest, longestRead(cache, data));
    }
    report.atMost("longest read while the file is written / one encoding", calmest / encoding, 0.1);
    report.note(fmt::format("{:.0f} us", calmest * 1e6));
}

}  // namespace

int main() {
    const Folder folder;
    Engine engine(folder.path());
    CountingQueues queues;
    const std::string file = folder.path() + "/cache.json";
    const Entries entries = makeEntries(engine.loop.wallNow());
    const std::string bytes = encoded(entries);
    writeFileAtomically(file, bytes, 0600);
    Report report;
    const auto megabytesASecond = [&](double seconds) {
        return fmt::format("{:.0f} MB/s", static_cast<double>(bytes.size()) / seconds / 1e6);
    };
    report.note(fmt::format("{:.1f} MB in the file", static_cast<double>(bytes.size()) / 1e6));

    std::vector<double> encodings;
    std::vector<double> decodings;
    for (int round = 0; round < rounds; ++round) {
        encodings.push_back(secondsOf([&] { encoded(entries); }));
        decodings.push_back(secondsOf([&] { GitHubIssueCacheFormat::decoded(bytes); }));
    }
    report.note("encoding: " + megabytesASecond(median(encodings)));
    report.note("decoding: " + megabytesASecond(median(decodings)));

    GitHubIssueCache cache(file, {.log = engine.log, .clock = engine.loop, .queues = queues});
    report.note("first touch: " + megabytesASecond(secondsOf([&] { cache.entry(pathOf(0)); })));
    const GitHubRepositoryData data = makeData();
    measureStore(report, cache, data, bytes, folder.path() + "/other.json");
    measureBurst(report, cache, data, queues.count);
    measureReads(report, cache, data, median(encodings));
    return report.exitStatus();
}
