// What happens when the platform says that the application has been launched, or is to end. Main
// thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "AppRuntime.h"
#include "DesktopPlatform.h"
#include "MainLoop.h"
#include "WeakAnchor.h"

namespace tarnbeck {

class AppDelegate : public ApplicationDelegate {
  public:
    // All must outlive it.
    struct Services {
        const AppRuntime& runtime;
        DesktopPlatform& platform;
        MainLoop& loop;
        std::string processName;
        // Tells the single-instance controller whom to call; not set where there is none.
        std::function<void(std::function<void()> handler)> setActivationHandler;
        // Gets one line without a line feed, for the user.
        std::function<void(std::string_view message)> report;
        bool isFirstStart = false;
    };
    explicit AppDelegate(Services services);

    void applicationDidFinishLaunching() override;
    // Never where there is a status item by which it can be reached again.
    bool applicationShouldTerminateAfterLastWindowClosed() override;
    void applicationWillTerminate() override;

  private:
    void showSomethingAtStart();
    bool isMenuBarOnly() const;

    const Services services_;
    Timer appearance_;
};

}  // namespace tarnbeck
