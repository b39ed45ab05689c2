// Windows around a content that is a window of Qt's itself. Main thread.
#pragma once

#include <QSize>
#include <QWindow>
#include <memory>
#include <string>

#include "SettingsWindowFactory.h"
#include "UserDefaults.h"

namespace tarnbeck {

struct QtWindowContent : settings_window::WindowContent {
    QtWindowContent(std::unique_ptr<QWindow> contentWindow, QSize smallest)
        : window(std::move(contentWindow)), minimumSize(smallest) {}

    std::unique_ptr<QWindow> window;
    QSize minimumSize;
};

class QtWindowPlatform : public settings_window::WindowPlatform {
  public:
    // Frames are kept in `userDefaults`, which must outlive all windows.
    explicit QtWindowPlatform(UserDefaults& userDefaults) : userDefaults_(userDefaults) {}

    // Its content must be a `QtWindowContent`, given once.
    std::shared_ptr<settings_window::Window> makeWindow(
        const settings_window::WindowFrame& frame,
        settings_window::WindowStyleMask styleMask) override;
    // A window that comes to the front asks for the focus by itself.
    void activateIgnoringOtherApplications() override {}

  private:
    UserDefaults& userDefaults_;
};

}  // namespace tarnbeck
