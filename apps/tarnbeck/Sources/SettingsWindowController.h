// Shows the settings in a window of their own. Main thread.
#pragma once

#include <functional>
#include <memory>

#include "MainLoop.h"
#include "RepositoryScanner.h"
#include "SettingsWindowFactory.h"
#include "WeakAnchor.h"

namespace tarnbeck {

class SettingsWindowController : public settings_window::WindowDelegate {
  public:
    // A new view of the settings, laid out no smaller than this.
    struct ContentRequest {
        RepositoryScanner& scanner;
        settings_window::WindowSize minimumSize{840, 560};
    };
    using MakeContent =
        std::function<std::shared_ptr<settings_window::WindowContent>(const ContentRequest&)>;

    // All must outlive it.
    struct Services {
        RepositoryScanner& scanner;
        MainLoop& loop;
        settings_window::WindowPlatform& windows;
        MakeContent makeContent;
    };
    explicit SettingsWindowController(Services services);
    ~SettingsWindowController() override;

    // The window that is there, with all that was typed into it, or else a new one.
    void show();
    // Destroys it, open or just closed, before this returns: for the end, while what it is made of
    // is still there.
    void dropWindow();
    void windowWillClose() override;

  private:
    const Services services_;
    std::shared_ptr<settings_window::Window> window_;
    std::shared_ptr<settings_window::Window> closedWindow_;  // until its own call has returned
    WeakAnchor<SettingsWindowController> anchor_{*this};
};

}  // namespace tarnbeck
