#include "TarnbeckEntry.h"

#include <chrono>
#include <utility>

#include "Overloaded.h"

namespace tarnbeck {

using single_instance::SingleInstanceConfiguration;
using single_instance::SingleInstanceController;
using single_instance::SingleInstancePolicy;
using single_instance::SingleInstanceStartupResult;

TarnbeckEntry::TarnbeckEntry(Services services) : services_(std::move(services)) {}

SingleInstanceConfiguration TarnbeckEntry::configuration() const {
    return SingleInstanceConfiguration({
        .bundleIdentifier = "com.local.Tarnbeck",
        .policy = {SingleInstancePolicy::UserDefaults{
            .boolean = [&defaults = services_.userDefaults](
                           const std::string& key) { return defaults.boolean(key) == true; },
            .allowMultipleInstancesKey = "allowMultipleInstances"}},
        .lockLocation = services_.lockLocation,
    });
}

int TarnbeckEntry::main(const std::function<void()>& runApplication) {
    const auto now = std::chrono::floor<std::chrono::microseconds>(services_.clock.wallNow());
    auto result =
        SingleInstanceController::start(configuration(), {.createdAt = now}, services_.platform);
    std::visit(Overloaded{
                   [&](SingleInstanceStartupResult::Run& run) {
                       singleInstanceController_ = std::move(run.controller);
                       runApplication();
                   },
                   [&](const SingleInstanceStartupResult::Failed& failed) {
                       services_.systemLog("Tarnbeck failed to acquire the single-instance lock: " +
                                           failed.error.description());
                   },
                   [](const SingleInstanceStartupResult::AlreadyRunning&) {},
               },
               result.value);
    return 0;
}

}  // namespace tarnbeck
