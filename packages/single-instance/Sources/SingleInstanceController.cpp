#include "SingleInstanceController.h"

#include <utility>

#include "DuplicateLaunchRequestStore.h"

namespace single_instance {

SingleInstanceStartupResult SingleInstanceController::start(
    const SingleInstanceConfiguration& configuration,
    const DuplicateLaunchRequest& duplicateLaunchRequest, const Platform& platform) {
    using Result = SingleInstanceStartupResult;
    if (configuration.policy.allowsMultipleInstances()) {
        return {Result::Run{
            std::make_unique<SingleInstanceController>(configuration, std::nullopt, platform)}};
    }
    auto acquired = InstanceLock::acquire(configuration.lockURL(), platform.fileManager);
    if (auto* lock = std::get_if<InstanceLock>(&acquired)) {
        return {Result::Run{
            std::make_unique<SingleInstanceController>(configuration, std::move(*lock), platform)}};
    }
    // The copy ends, whether or not the first one hears of it.
    DuplicateLaunchRequestStore::post({.request = duplicateLaunchRequest,
                                       .configuration = configuration,
                                       .fileManager = platform.fileManager,
                                       .signals = platform.signals});
    const auto& error = std::get<AcquireError>(acquired);
    if (error.isAlreadyRunning()) return {Result::AlreadyRunning{}};
    return {Result::Failed{error}};
}

SingleInstanceController::SingleInstanceController(SingleInstanceConfiguration configuration,
                                                   std::optional<InstanceLock> lock,
                                                   Platform platform)
    : configuration_(std::move(configuration)),
      platform_(std::move(platform)),
      lock_(std::move(lock)),
      anchor_(std::make_shared<SingleInstanceController*>(this)) {
    if (lock_) startObserving();
}

void SingleInstanceController::startObserving() {
    const std::weak_ptr<SingleInstanceController*> anchor = anchor_;
    const auto onSignal = [anchor, post = platform_.postToMainThread] {
        post([anchor] {
            if (const auto controller = anchor.lock()) (*controller)->duplicateWasLaunched();
        });
    };
    observation_ = DuplicateLaunchSignal::observe(configuration_.activationSignalName, onSignal,
                                                  platform_.signals);
}

// Without a handler the requests stay on disk.
void SingleInstanceController::duplicateWasLaunched() {
    if (activationHandler_) {
        callHandler();
    } else {
        pendingActivation_ = true;
    }
}

void SingleInstanceController::setActivationHandler(std::function<void()> handler) {
    setDuplicateLaunchHandler(
        [handler = std::move(handler)](const std::vector<DuplicateLaunchRequest>&) { handler(); });
}

void SingleInstanceController::setDuplicateLaunchHandler(ActivationHandler handler) {
    activationHandler_ = std::move(handler);
    if (std::exchange(pendingActivation_, false)) callHandler();
}

// The handler may replace itself.
void SingleInstanceController::callHandler() {
    const auto requests =
        DuplicateLaunchRequestStore::consumePending(configuration_, platform_.fileManager);
    const ActivationHandler handler = activationHandler_;
    handler(requests);
}

std::unique_ptr<SingleInstanceController> SingleInstanceStartup::start(
    const SingleInstanceConfiguration& configuration,
    const DuplicateLaunchRequest& duplicateLaunchRequest,
    const SingleInstanceController::Platform& platform,
    const std::function<void(const AcquireError&)>& onFailure) {
    using Result = SingleInstanceStartupResult;
    auto result =
        SingleInstanceController::start(configuration, duplicateLaunchRequest, platform).value;
    if (auto* run = std::get_if<Result::Run>(&result)) return std::move(run->controller);
    if (const auto* failed = std::get_if<Result::Failed>(&result)) onFailure(failed->error);
    return nullptr;
}

}  // namespace single_instance
