// A scanner over real repositories that sees their changes: the real source of file events, real
// git, real threads. Tests wait for what they expect to see; only the minimum interval between
// refreshes is left out.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "GitCommand.h"
#include "GitFixture.h"
#include "PosixMainLoop.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "SystemFileEvents.h"
#include "TemporaryFolder.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck::testing {

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
        options.fileSystemRefreshMinimumInterval = std::chrono::seconds(0);
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
        const auto observation = scanner_->observe([&](RepositoryScanner::Property) { look(); });
        const Timer patience = loop_.after(std::chrono::seconds(60), [&] {
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

}  // namespace tarnbeck::testing
