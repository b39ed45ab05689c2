// The process entry: decides whether this process may run at all, before any other object of the
// system exists. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Clock.h"
#include "SingleInstanceController.h"
#include "UserDefaults.h"

namespace tarnbeck {

class TarnbeckEntry {
  public:
    // All must outlive it.
    struct Services {
        const UserDefaults& userDefaults;
        single_instance::SingleInstanceController::Platform platform;
        const Clock& clock;
        // Writes an error to the system's log.
        std::function<void(const std::string& message)> systemLog;
        // Where the lock lies; the user's own place unless one is given.
        single_instance::SingleInstanceLockLocation lockLocation = {};
    };
    explicit TarnbeckEntry(Services services);

    // Makes the application and runs its main loop, if this process may run. Returns the process's
    // exit status, which is 0 in every case.
    int main(const std::function<void()>& runApplication);

    // Kept for the life of the process, so that its lock stays held. Null where there is none.
    single_instance::SingleInstanceController* singleInstanceController() {
        return singleInstanceController_.get();
    }

  private:
    single_instance::SingleInstanceConfiguration configuration() const;

    const Services services_;
    std::unique_ptr<single_instance::SingleInstanceController> singleInstanceController_;
};

}  // namespace tarnbeck
