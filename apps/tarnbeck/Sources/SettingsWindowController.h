// Shows the settings in a window of their own. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "MainLoop.h"
#include "RepositoryScanner.h"
#include "WeakAnchor.h"

namespace tarnbeck {

class SettingsWindow {
  public:
    SettingsWindow() = default;
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;
    virtual ~SettingsWindow() = default;

    // Brings it to the front and activates the application, ignoring others.
    virtual void present() = 0;
};

// The window that is to be made: titled, closable, miniaturizable and resizable, around a new view
// of the settings.
struct SettingsWindowRequest {
    RepositoryScanner& scanner;
    double width = 920;
    double height = 620;
    double minimumWidth = 840;
    double minimumHeight = 560;
    std::string title = "Settings";
    std::string autosaveName = "TarnbeckSettingsWindow";  // its frame is kept under this name
    std::function<void()> windowWillClose;
};

class SettingsWindowController {
  public:
    using MakeWindow = std::function<std::unique_ptr<SettingsWindow>(SettingsWindowRequest)>;

    SettingsWindowController(RepositoryScanner& scanner, MainLoop& loop, MakeWindow makeWindow);

    // The window that is there, with all that was typed into it, or else a new one.
    void show();

  private:
    void windowWillClose();

    RepositoryScanner& scanner_;
    MainLoop& loop_;
    const MakeWindow makeWindow_;
    std::shared_ptr<SettingsWindow> window_;
    WeakAnchor<SettingsWindowController> anchor_{*this};
};

}  // namespace tarnbeck
