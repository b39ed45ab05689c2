// A change on disk shows by itself: the real source of file events, real git, real threads. The
// tests wait for what they expect to see; only the minimum interval between refreshes is left out.
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include <fmt/format.h>

#include "DependencyCommandRunner.h"
#include "GitCommand.h"
#include "GitFixture.h"
#include "PosixMainLoop.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "SystemFileEvents.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using namespace testing;
namespace fs = std::filesystem;
using Property = RepositoryScanner::Property;

// The real source, which says when a stream stands.
class ObservedFileEvents : public FileEvents {
  public:
    explicit ObservedFileEvents(std::function<void()> opened) : opened_(std::move(opened)) {}
    Result<std::unique_ptr<FileEventStream>> open(const Request& request) override {
        auto stream = events_->open(request);
        opened_();
        return stream;
    }

  private:
    const std::unique_ptr<FileEvents> events_ = makeFileEvents();
    const std::function<void()> opened_;
};

class LiveWatch : public ::testing::Test {
  protected:
    ~LiveWatch() override {
        scanner_ = nullptr;
        queues_.waitUntilIdle();
    }

    std::string make(const std::string& name) {
        paths_.push_back(makeRepository(folder_ / name));
        return paths_.back();
    }

    // Watches what was made, and returns when the first picture is there.
    void start() {
        RepositoryScanner::Options options{.autoStart = false};
        options.configuration.repoPaths = paths_;
        options.fileSystemRefreshMinimumInterval = 0s;
        const RepositoryScanner::StaticScan tools{.loop = loop_,
                                                  .queues = queues_,
                                                  .log = log_,
                                                  .git = services_.git,
                                                  .home = folder_.path()};
        options.scanRepositoryHandler = [tools](const std::string& path,
                                                const ScanCompletion& completion) {
            RepositoryScanner::scanRepositoryImpl(tools, {.at = path}, completion);
        };
        scanner_ = std::make_unique<RepositoryScanner>(services_, std::move(options));
        scanner_->start();
        EXPECT_TRUE(waitUntil(
            [this] { return scanner_->state().lastScan.has_value() && streamsOpened_ == 1; }));
        settle();
    }

    // Until the background has nothing left to do: after a scan it looks which folders there are.
    void settle() {
        queues_.waitUntilIdle();
        loop_.stop();
        loop_.run();
    }

    // Runs the main loop until the picture is as expected; false after a minute.
    bool waitUntil(const std::function<bool()>& expected) {
        if (expected()) return true;
        bool inTime = true;
        const auto look = [&] {
            if (expected()) loop_.stop();
        };
        lookAgain_ = look;
        const auto observation = scanner_->observe([&](Property) { look(); });
        const Timer patience = loop_.after(60s, [&] {
            inTime = false;
            loop_.stop();
        });
        while (inTime && !expected()) loop_.run();
        lookAgain_ = nullptr;
        return expected();
    }

    // The entry of the repository at the path.
    const GitRepository& at(const std::string& path) const {
        for (const auto& repository : scanner_->repositories()) {
            if (repository->path == path) return *repository;
        }
        throw std::runtime_error("no entry for " + path);
    }

    TemporaryFolder folder_;

    int streamsOpened_ = 0;  // so far

  private:
    void noteStream() {
        ++streamsOpened_;
        if (lookAgain_) lookAgain_();
    }

    std::function<void()> lookAgain_;
    std::vector<std::string> paths_;
    PosixMainLoop loop_;
    PosixProcessLauncher launcher_;
    ThreadedWorkQueues queues_;
    ScanLog log_{{.home = folder_.path()}, loop_, queues_};
    NameCollator collator_{"en_US"};
    const GitCommand git_{{.home = folder_ / "home"}, launcher_, log_};
    ObservedFileEvents fileEvents_{[this] { loop_.post([this] { noteStream(); }); }};
    const RepositoryScanner::Services services_{
        .loop = loop_,
        .queues = queues_,
        .log = log_,
        .collator = collator_,
        .git = [this](const GitInvocation& invocation) { return git_.run(invocation); },
        .home = folder_.path(),
        .fileEvents = &fileEvents_};

  protected:
    std::unique_ptr<RepositoryScanner> scanner_;
};

TEST_F(LiveWatch, WrittenFileShowsByItself) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, FileInANewFolderShowsByItself) {
    const std::string path = make("a");
    start();
    fs::create_directories(path + "/one/two/three");
    std::ofstream(path + "/one/two/three/new.txt") << "new\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, BranchCommitTagAndStashShowByThemselves) {
    const std::string path = make("a");
    start();
    git(path, {"checkout", "-q", "-b", "topic"});
    git(path, {"tag", "v1"});
    std::ofstream(path + "/file.txt") << "other\n";
    git(path, {"stash", "-q"});
    EXPECT_TRUE(waitUntil([&] {
        return at(path).currentBranch == "topic" && at(path).tags.size() == 1 &&
               at(path).stashCount == 1;
    }));
}

TEST_F(LiveWatch, ChangeInALinkedWorktreeThatIsMadeMeanwhileShowsInItsRepository) {
    const std::string path = make("a");
    start();
    const std::string tree = folder_ / "tree";
    git(path, {"worktree", "add", "-q", "-b", "topic", tree});
    ASSERT_TRUE(waitUntil([&] { return at(path).worktrees.size() == 2 && streamsOpened_ == 2; }));
    std::ofstream(tree + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).worktrees[1].changes.size() == 1; }));
}

TEST_F(LiveWatch, RepositoryThatIsMovedAwayAndBackIsSeenAgain) {
    const std::string path = make("a");
    start();
    fs::rename(path, path + "-away");
    fs::rename(path + "-away", path);
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, RepositoryThatIsDeletedKeepsItsLastPictureAndIsBackWithTheNextScan) {
    const std::string path = make("a");
    const std::string other = make("b");
    start();
    fs::remove_all(path);
    std::ofstream(other + "/file.txt") << "other\n";
    ASSERT_TRUE(waitUntil([&] { return at(other).uncommittedChanges.size() == 1; }));
    EXPECT_EQ(at(path).currentBranch, "main");
    makeRepository(path);
    git(path, {"checkout", "-q", "-b", "again"});
    scanner_->requestRefresh({});
    EXPECT_TRUE(waitUntil([&] { return at(path).currentBranch == "again"; }));
}

TEST_F(LiveWatch, IndexLockLeftBehindDoesNotStopThePicture) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/.git/index.lock") << "";
    std::ofstream(path + "/file.txt") << "other\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
    EXPECT_TRUE(fs::exists(path + "/.git/index.lock"));
}

TEST_F(LiveWatch, FileWithoutUtf8InItsNameShowsByItself) {
    const std::string path = make("a");
    start();
    std::ofstream(path + "/\xff\xfe") << "new\n";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

TEST_F(LiveWatch, TenThousandFilesWrittenAtOnceShowInTheEnd) {
    const std::string path = make("a");
    start();
    fs::create_directory(path + "/many");
    for (int number = 0; number < 10'000; ++number) {
        std::ofstream(fmt::format("{}/many/{}.txt", path, number)) << number;
    }
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 10'000; }));
}

class LiveWatchSlow : public LiveWatch {
  protected:
    PosixProcessLauncher launcherOfUser_;
    const std::string identity_ =
        "export GIT_AUTHOR_NAME=x GIT_AUTHOR_EMAIL=x@example.com GIT_COMMITTER_NAME=x "
        "GIT_COMMITTER_EMAIL=x@example.com GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=gc.auto "
        "GIT_CONFIG_VALUE_0=0; ";
};

TEST_F(LiveWatchSlow, RebaseOf300CommitsUnderWatchSucceedsAndItsEndIsShown) {
    const std::string path = make("a");
    git(path, {"checkout", "-q", "-b", "topic"});
    const DependencyCommandRunner user(folder_ / "home", launcherOfUser_);
    const auto run = [&](const std::string& script) {
        const CommandResult result = user.runCommand({.executable = "/bin/sh",
                                                      .args = {"-c", identity_ + script},
                                                      .cwd = path,
                                                      .timeout = 200s});
        EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    };
    run("for i in $(seq 300); do echo $i > f$((i % 40)); git add .; git commit -q -m $i; done; "
        "git checkout -q main; echo base > base; git add .; git commit -q -m base; "
        "git checkout -q topic");
    start();
    std::thread rebase([&] { run("git rebase -q main && git tag done"); });
    EXPECT_TRUE(waitUntil([&] { return at(path).tags.size() == 1; }));
    rebase.join();
    EXPECT_EQ(at(path).currentBranch, "topic");
    EXPECT_THAT(at(path).uncommittedChanges, ::testing::IsEmpty());
    EXPECT_EQ(git(path, {"rev-list", "--count", "main..topic"}), "300\n");
}

TEST_F(LiveWatchSlow, CheckoutBetweenBranchesThatDifferInThousandsOfFilesSucceedsAndItsEndIsShown) {
    const std::string path = make("a");
    git(path, {"checkout", "-q", "-b", "large"});
    for (int folder = 0; folder < 40; ++folder) {
        const std::string name = fmt::format("{}/folder{}", path, folder);
        fs::create_directory(name);
        for (int file = 0; file < 100; ++file) {
            std::ofstream(fmt::format("{}/{}.txt", name, file)) << folder << ' ' << file;
        }
    }
    git(path, {"add", "."});
    git(path, {"commit", "-q", "-m", "large"});
    start();
    git(path, {"checkout", "-q", "main"});
    EXPECT_TRUE(waitUntil([&] { return at(path).currentBranch == "main"; }));
    git(path, {"checkout", "-q", "large"});
    EXPECT_TRUE(waitUntil(
        [&] { return at(path).currentBranch == "large" && at(path).uncommittedChanges.empty(); }));
    std::ofstream(path + "/folder39/99.txt") << "other";
    EXPECT_TRUE(waitUntil([&] { return at(path).uncommittedChanges.size() == 1; }));
}

}  // namespace
}  // namespace tarnbeck
