// Makes and presents a settings window, out of the few things that a windowing system does.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "WindowGeometry.h"

namespace settings_window {

struct WindowStyleMask {
    bool titled = false;
    bool closable = false;
    bool miniaturizable = false;
    bool resizable = false;
    bool operator==(const WindowStyleMask&) const = default;
};

// What a window shows; only the windowing system looks into it.
class WindowContent {
  public:
    WindowContent() = default;
    WindowContent(const WindowContent&) = delete;
    WindowContent& operator=(const WindowContent&) = delete;
    virtual ~WindowContent() = default;
};

class WindowDelegate {
  public:
    WindowDelegate() = default;
    WindowDelegate(const WindowDelegate&) = delete;
    WindowDelegate& operator=(const WindowDelegate&) = delete;
    virtual ~WindowDelegate() = default;

    virtual void windowWillClose() = 0;
};

// Main thread.
class Window {
  public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    virtual void setTitle(std::string_view title) = 0;
    virtual void setReleasedWhenClosed(bool isReleased) = 0;
    virtual void center() = 0;
    virtual void setContentView(std::shared_ptr<WindowContent> content) = 0;
    virtual void setContentViewController(std::shared_ptr<WindowContent> controller) = 0;
    // Held weakly: it must outlive the window, or be replaced by null.
    virtual void setDelegate(WindowDelegate* delegate) = 0;
    // Restores the frame that was saved under the name, and saves it from now on.
    virtual void setFrameAutosaveName(std::string_view name) = 0;
    virtual void makeKeyAndOrderFront() = 0;
};

// Main thread.
class WindowPlatform {
  public:
    WindowPlatform() = default;
    WindowPlatform(const WindowPlatform&) = delete;
    WindowPlatform& operator=(const WindowPlatform&) = delete;
    virtual ~WindowPlatform() = default;

    // One that is not shown yet, buffered and made at once.
    virtual std::shared_ptr<Window> makeWindow(const WindowFrame& frame,
                                               WindowStyleMask styleMask) = 0;
    virtual void activateIgnoringOtherApplications() = 0;
};

namespace SettingsWindowFactory {

struct MakeWindow {
    WindowSize size;
    std::string_view title;
    WindowStyleMask styleMask;
    std::shared_ptr<WindowContent> contentView = nullptr;
    std::shared_ptr<WindowContent> contentViewController = nullptr;
    std::optional<std::string_view> autosaveName = std::nullopt;
    WindowDelegate* delegate = nullptr;
};

// Stands in the centre, unless a frame was saved under its name.
std::shared_ptr<Window> makeWindow(MakeWindow request, WindowPlatform& platform);

// To the front, with the keyboard's focus, and the application with it.
void present(Window& window, WindowPlatform& platform);

}  // namespace SettingsWindowFactory

}  // namespace settings_window
