// Children through `posix_spawn`, whose cost does not grow with the memory of the parent.
#pragma once

#include <memory>

#include "ProcessLauncher.h"

namespace tarnbeck {

class PosixProcessLauncher : public ProcessLauncher {
  public:
    PosixProcessLauncher();
    ~PosixProcessLauncher() override;

    Result<std::unique_ptr<ChildProcess>> launch(const LaunchRequest& request) override;
    void endAllSessions() override;

  private:
    std::shared_ptr<class LiveChildren> children_;
};

}  // namespace tarnbeck
