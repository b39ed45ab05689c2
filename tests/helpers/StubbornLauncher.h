// Children that exist in words only and tell what was sent to them, and when.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "ProcessLauncher.h"

namespace tarnbeck::testing {

// What was sent to a child, and when.
struct Sent {
    std::optional<std::chrono::steady_clock::time_point> terminate;
    std::optional<std::chrono::steady_clock::time_point> kill;
};

enum class EndsBy { sigterm, sigkill, itself };

class StubbornChild : public ChildProcess {
  public:
    StubbornChild(EndsBy endsBy, Sent& sent) : endsBy_(endsBy), sent_(sent) {}
    pid_t processIdentifier() const override { return 0; }
    FileDescriptor takeStandardOutput() override { return {}; }
    FileDescriptor takeStandardError() override { return {}; }
    int exitDescriptor() override { return -1; }
    bool isRunning() override {
        if (endsBy_ == EndsBy::itself) return false;
        return endsBy_ == EndsBy::sigterm ? !sent_.terminate : !sent_.kill;
    }
    int terminationStatus() const override { return 0; }
    void terminate() override { sent_.terminate = std::chrono::steady_clock::now(); }
    void kill() override { sent_.kill = std::chrono::steady_clock::now(); }

  private:
    const EndsBy endsBy_;
    Sent& sent_;
};

class StubbornLauncher : public ProcessLauncher {
  public:
    StubbornLauncher(EndsBy endsBy, Sent& sent) : endsBy_(endsBy), sent_(sent) {}
    Result<std::unique_ptr<ChildProcess>> launch(const LaunchRequest& /*request*/) override {
        return std::unique_ptr<ChildProcess>(std::make_unique<StubbornChild>(endsBy_, sent_));
    }
    void endAllSessions() override {}

  private:
    const EndsBy endsBy_;
    Sent& sent_;
};

}  // namespace tarnbeck::testing
