// Decides at the start of a process whether it is the only running copy, and in the one that is
// hears of those that come later.
//
// Two copies decide by the lock alone. A second one leaves a file with what it was asked to do (if
// anything), wakes the first by a signal and ends. In a very small window the first holds the lock
// and does not listen yet; a signal that comes then is lost, and its requests wait for the next.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "DuplicateLaunchRequest.h"
#include "DuplicateLaunchSignal.h"
#include "FileManager.h"
#include "InstanceLock.h"
#include "NamedSignals.h"
#include "SingleInstanceConfiguration.h"

namespace single_instance {

class SingleInstanceController;

struct SingleInstanceStartupResult {
    struct Run {
        std::unique_ptr<SingleInstanceController> controller;
    };
    struct Failed {
        AcquireError error;
    };
    struct AlreadyRunning {};
    std::variant<Run, Failed, AlreadyRunning> value;
};

// To be kept until the process ends: the lock goes with it. Main thread only.
class SingleInstanceController {
  public:
    // What it needs of the system; both must outlive it.
    struct Platform {
        FileManager& fileManager;
        NamedSignals& signals;
        // Runs a task on the main thread; any thread may call it.
        std::function<void(std::function<void()>)> postToMainThread;
    };
    using ActivationHandler = std::function<void(const std::vector<DuplicateLaunchRequest>&)>;

    // Once per process. A copy that can't take the lock wakes a possible first one in any case.
    static SingleInstanceStartupResult start(const SingleInstanceConfiguration& configuration,
                                             const DuplicateLaunchRequest& duplicateLaunchRequest,
                                             const Platform& platform);

    // Without a lock it hears of no other copy. See `start`.
    SingleInstanceController(SingleInstanceConfiguration configuration,
                             std::optional<InstanceLock> lock, Platform platform);
    SingleInstanceController(const SingleInstanceController&) = delete;
    SingleInstanceController& operator=(const SingleInstanceController&) = delete;

    const SingleInstanceConfiguration& configuration() const { return configuration_; }
    bool holdsLock() const { return lock_.has_value(); }

    // Each replaces the handler that there was. Signals that came before are one call, at once.
    void setActivationHandler(std::function<void()> handler);
    void setDuplicateLaunchHandler(ActivationHandler handler);

  private:
    void startObserving();
    void duplicateWasLaunched();
    void callHandler();

    SingleInstanceConfiguration configuration_;
    Platform platform_;
    std::optional<InstanceLock> lock_;
    std::optional<DuplicateLaunchSignalObservation> observation_;
    ActivationHandler activationHandler_;
    bool pendingActivation_ = false;
    // What a callback holds of this: it leads here for as long as this lives.
    std::shared_ptr<SingleInstanceController*> anchor_;
};

namespace SingleInstanceStartup {

// The controller where this process may run; otherwise nothing, and `onFailure` has been called if
// that is not because of another copy.
std::unique_ptr<SingleInstanceController> start(
    const SingleInstanceConfiguration& configuration,
    const DuplicateLaunchRequest& duplicateLaunchRequest,
    const SingleInstanceController::Platform& platform,
    const std::function<void(const AcquireError&)>& onFailure);

}  // namespace SingleInstanceStartup

}  // namespace single_instance
