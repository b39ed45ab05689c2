// A desktop without a screen: it notes what is asked of it, in order, and a test plays the user.
#pragma once

#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CaffeinateLaunching.h"
#include "DesktopPlatform.h"
#include "MenuBarController.h"
#include "ObserverList.h"
#include "SettingsWindowController.h"

namespace tarnbeck::testing {

using Events = std::vector<std::string>;

class WindowByHand : public DesktopWindow {
  public:
    WindowByHand(std::string title, Events& events) : title_(std::move(title)), events_(events) {}
    std::string title() const override { return title_; }
    void makeKeyAndOrderFront() override { events_.push_back("front " + title_); }
    void orderOut() override { events_.push_back("out " + title_); }

  private:
    std::string title_;
    Events& events_;
};

class ButtonByHand : public StatusItemButton {
  public:
    void setAction(std::vector<ClickKind> on, std::function<void()> action) override {
        kinds = std::move(on);
        act = std::move(action);
    }
    void setImage(const StatusImage& image) override { images.push_back(image); }
    std::optional<ScreenSize> screenVisibleFrame() const override { return screen; }
    std::optional<menubar_popover::Rect> screenFrame() const override { return frame; }

    std::vector<ClickKind> kinds;
    std::function<void()> act;
    std::vector<StatusImage> images;
    std::optional<ScreenSize> screen = ScreenSize{1728, 1080};
    std::optional<menubar_popover::Rect> frame = menubar_popover::Rect{1000, 0, 40, 22};
};

class PopoverByHand : public menubar_popover::Popover {
  public:
    explicit PopoverByHand(Events& events) : events_(events) {}
    bool isShown() const override { return shown; }
    void show(menubar_popover::StatusBarButton& /*button*/, menubar_popover::Edge edge) override {
        events_.push_back(edge == menubar_popover::Edge::bottom ? "popover below" : "popover");
        shown = true;
    }
    void performClose(const void* /*sender*/) override { close(); }
    std::optional<menubar_popover::Rect> windowFrame() const override {
        return menubar_popover::Rect{500, 22, 760, 560};
    }
    menubar_popover::Token observeDidClose(std::function<void()> observer) override {
        return observers_.add(std::move(observer));
    }

    void close() {
        events_.push_back("popover closed");
        shown = false;
        ObserverList<>::tell(observers_.current());
    }

    bool shown = false;

  private:
    Events& events_;
    ObserverList<> observers_;
};

class DesktopByHand : public DesktopPlatform, public menubar_popover::PopoverPlatform {
  public:
    explicit DesktopByHand(std::function<void(Task)> postToMainThread)
        : postToMainThread_(std::move(postToMainThread)) {}

    void attach(ApplicationDelegate& attached) override {
        events.emplace_back("delegate");
        delegate = &attached;
    }
    void detach() override { delegate = nullptr; }
    void openWindowGroup(const WindowGroup& group) override {
        groups.push_back(group);
        addWindow(group.title);
    }
    void setActivationPolicy(ActivationPolicy policy) override {
        events.emplace_back(policy == ActivationPolicy::regular ? "regular" : "accessory");
    }
    void activateIgnoringOtherApps() override { events.emplace_back("activate"); }
    std::vector<DesktopWindow*> windows() override {
        std::vector<DesktopWindow*> all;
        for (const auto& window : windows_) all.push_back(window.get());
        return all;
    }
    void setMainMenu(const app_commands::MainMenu& mainMenu) override {
        for (const auto& item : mainMenu.items) {
            for (const auto& command : item.submenu) events.push_back("menu " + command.title);
        }
    }
    void terminate() override { events.emplace_back("terminate"); }
    bool hasStatusArea() const override { return statusArea; }
    void showMainWindow() override { events.emplace_back("main window"); }
    std::unique_ptr<StatusItem> makeStatusItem() override;
    std::shared_ptr<menubar_popover::Popover> makePopover() override {
        events.emplace_back("popover made");
        return popover;
    }
    std::optional<ClickEvent> currentEvent() const override { return click; }
    std::optional<ScreenSize> mainScreenVisibleFrame() const override { return mainScreen; }

    menubar_popover::Token addLocalMonitor(
        const std::vector<menubar_popover::EventKind>& /*kinds*/,
        std::function<menubar_popover::EventFate(const menubar_popover::Event&)> /*handler*/)
        override {
        auto token = std::make_shared<int>();
        localMonitor = token;
        return token;
    }
    menubar_popover::Token addGlobalMonitor(
        const std::vector<menubar_popover::EventKind>& /*kinds*/,
        std::function<void(const menubar_popover::Event&)> /*handler*/) override {
        return std::make_shared<int>();
    }
    menubar_popover::Point mouseLocation() const override { return {}; }
    void activateApplication() override { events.emplace_back("activate for the popover"); }
    void post(std::function<void()> task) override { postToMainThread_(std::move(task)); }

    void addWindow(std::string title) {
        windows_.push_back(std::make_unique<WindowByHand>(std::move(title), events));
    }
    void closeWindows() { windows_.clear(); }
    // What the user does with the status item.
    void clickWith(std::optional<ClickEvent> event) {
        click = event;
        button->act();
    }

    Events events;
    ApplicationDelegate* delegate = nullptr;
    std::vector<WindowGroup> groups;
    bool statusArea = true;
    std::shared_ptr<ButtonByHand> button = std::make_shared<ButtonByHand>();
    std::shared_ptr<PopoverByHand> popover = std::make_shared<PopoverByHand>(events);
    std::optional<ClickEvent> click;
    std::optional<ScreenSize> mainScreen = ScreenSize{1000, 800};
    std::weak_ptr<int> localMonitor;  // alive while the popover is watched
    std::vector<MenuItem> menu;       // that was shown last
    std::function<void(std::size_t)> choose;

  private:
    class Item;

    std::function<void(Task)> postToMainThread_;
    std::vector<std::unique_ptr<WindowByHand>> windows_;
};

class DesktopByHand::Item : public StatusItem {
  public:
    explicit Item(DesktopByHand& desktop) : desktop_(desktop) {}
    std::shared_ptr<StatusItemButton> button() const override { return desktop_.button; }
    void setVisible(bool visible) override {
        desktop_.events.emplace_back(visible ? "item visible" : "item hidden");
    }
    void popUpMenu(const std::vector<MenuItem>& items,
                   const std::function<void(std::size_t index)>& onChosen) override {
        desktop_.events.emplace_back("menu");
        desktop_.menu = items;
        desktop_.choose = onChosen;
    }
    double thickness() const override { return 22; }
    TextMeasurement textMeasurement() const override {
        return [](const auto& runs, double) {
            return TextSize{5.0 * static_cast<double>(runs.size()), 11};
        };
    }

  private:
    DesktopByHand& desktop_;
};

inline std::unique_ptr<StatusItem> DesktopByHand::makeStatusItem() {
    events.emplace_back("status item");
    return std::make_unique<Item>(*this);
}

// Notes which views it was given.
class PopoverHostByHand : public PopoverHost {
  public:
    explicit PopoverHostByHand(Events& events) : events_(events) {}
    void setRootView(const MainView::Host& form, ScreenSize size) override {
        events_.push_back(std::string(form.usesPopoverAppearance ? "popover view" : "view") +
                          (form.embedToolbarInContent ? " with strip " : " ") +
                          std::to_string(std::lround(size.width)) + "x" +
                          std::to_string(std::lround(size.height)));
    }
    void dropRootView() override { events_.emplace_back("view dropped"); }

  private:
    Events& events_;
};

// Children that keep the machine awake in the test's imagination.
class CaffeinateByHand : public system_awake::CaffeinateLaunching {
  public:
    explicit CaffeinateByHand(Events& events) : events_(events) {}

    std::variant<std::unique_ptr<system_awake::CaffeinateProcess>, system_awake::LaunchFailure>
    start(const std::vector<std::string>& arguments,
          std::optional<std::int32_t> boundToProcessID) override {
        std::string event = "awake";
        for (const std::string& argument : arguments) event += " " + argument;
        if (boundToProcessID) event += " for " + std::to_string(*boundToProcessID);
        events_.push_back(event);
        return std::make_unique<Process>(events_, std::to_string(++count_));
    }

  private:
    class Process : public system_awake::CaffeinateProcess {
      public:
        Process(Events& events, std::string id) : events_(events), id_(std::move(id)) {}
        const std::string& id() const override { return id_; }
        bool isRunning() const override { return running_; }
        void setTerminationHandler(std::function<void()> /*handler*/) override {}
        void terminate() override {
            events_.emplace_back("asleep");
            running_ = false;
        }

      private:
        Events& events_;
        std::string id_;
        bool running_ = true;
    };

    Events& events_;
    int count_ = 0;
};

// Makes windows that note what happens to them.
class WindowsByHand : public settings_window::WindowPlatform {
  public:
    explicit WindowsByHand(Events& events) : events_(events) {}

    std::shared_ptr<settings_window::Window> makeWindow(
        const settings_window::WindowFrame& frame, settings_window::WindowStyleMask mask) override {
        size = frame.size;
        styleMask = mask;
        return std::make_shared<Window>(*this);
    }
    void activateIgnoringOtherApplications() override { events_.emplace_back("activate"); }

    SettingsWindowController::MakeContent contentMaker() {
        return [this](const SettingsWindowController::ContentRequest& request) {
            events_.emplace_back("settings view");
            requests.push_back(request);
            return std::make_shared<Content>();
        };
    }
    // The user closes the last one.
    void close() const { delegate->windowWillClose(); }

    std::vector<SettingsWindowController::ContentRequest> requests;
    settings_window::WindowSize size;
    settings_window::WindowStyleMask styleMask;
    std::string title;
    std::string autosaveName;
    settings_window::WindowDelegate* delegate = nullptr;

  private:
    class Content : public settings_window::WindowContent {};
    class Window : public settings_window::Window {
      public:
        explicit Window(WindowsByHand& windows) : windows_(windows) {}
        ~Window() override { windows_.events_.emplace_back("settings gone"); }
        void setTitle(std::string_view title) override { windows_.title = title; }
        void setReleasedWhenClosed(bool /*isReleased*/) override {}
        void center() override {}
        void setContentView(std::shared_ptr<settings_window::WindowContent> content) override {
            if (content) windows_.events_.emplace_back("content view");
        }
        void setContentViewController(
            std::shared_ptr<settings_window::WindowContent> controller) override {
            content_ = std::move(controller);
        }
        void setDelegate(settings_window::WindowDelegate* delegate) override {
            windows_.delegate = delegate;
        }
        void setFrameAutosaveName(std::string_view name) override { windows_.autosaveName = name; }
        void makeKeyAndOrderFront() override {
            windows_.events_.push_back("front " + windows_.title);
        }

      private:
        WindowsByHand& windows_;
        std::shared_ptr<settings_window::WindowContent> content_;
    };

    Events& events_;
};

}  // namespace tarnbeck::testing
