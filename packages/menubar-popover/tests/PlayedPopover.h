// A popover, its button and the windowing system around them, played by a test.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PopoverPlatform.h"

namespace menubar_popover::testing {

using Steps = std::vector<std::string>;

// Calls that are made as long as their token is held.
template <class Call>
class Registrations {
  public:
    Token add(Call call) {
        auto token = std::make_shared<Call>(std::move(call));
        calls_.push_back(token);
        return token;
    }
    std::vector<std::shared_ptr<Call>> present() const {
        std::vector<std::shared_ptr<Call>> result;
        for (const auto& call : calls_) {
            if (auto held = call.lock()) result.push_back(std::move(held));
        }
        return result;
    }

  private:
    std::vector<std::weak_ptr<Call>> calls_;
};

class PlayedButton : public StatusBarButton {
  public:
    std::optional<Rect> screenFrame() const override { return frame; }

    std::optional<Rect> frame = Rect{100, 0, 30, 20};
};

class PlayedPopover : public Popover {
  public:
    explicit PlayedPopover(Steps& steps) : steps_(steps) {}

    bool isShown() const override { return shown; }
    void show(StatusBarButton&, Edge preferredEdge) override {
        steps_.push_back(preferredEdge == Edge::bottom ? "show at the bottom" : "show elsewhere");
        shown = true;
    }
    void performClose(const void* sender) override {
        steps_.push_back(sender ? "close for a sender" : "close");
        shown = false;
    }
    std::optional<Rect> windowFrame() const override { return frame; }
    Token observeDidClose(std::function<void()> observer) override {
        return observers_.add(std::move(observer));
    }

    void tellDidClose() {
        for (const auto& observer : observers_.present()) (*observer)();
    }
    std::size_t observerCount() const { return observers_.present().size(); }

    bool shown = false;
    std::optional<Rect> frame = Rect{50, 20, 200, 300};

  private:
    Steps& steps_;
    Registrations<std::function<void()>> observers_;
};

class PlayedPlatform : public PopoverPlatform {
  public:
    explicit PlayedPlatform(Steps& steps) : steps_(steps) {}

    Token addLocalMonitor(const std::vector<EventKind>& kinds,
                          std::function<EventFate(const Event&)> handler) override {
        localKinds = kinds;
        return local_.add(std::move(handler));
    }
    Token addGlobalMonitor(const std::vector<EventKind>& kinds,
                           std::function<void(const Event&)> handler) override {
        globalKinds = kinds;
        return global_.add(std::move(handler));
    }
    Point mouseLocation() const override { return mouse; }
    void activateApplication() override { steps_.emplace_back("activate"); }
    void post(std::function<void()> task) override { posted_.push_back(std::move(task)); }

    // What becomes of an event in this application.
    EventFate handOut(const Event& event) {
        for (const auto& handler : local_.present()) {
            if ((*handler)(event) == EventFate::isSwallowed) return EventFate::isSwallowed;
        }
        return EventFate::goesOn;
    }
    EventFate click(Point where, EventKind kind = EventKind::leftMouseDown) {
        mouse = where;
        return handOut({.kind = kind});
    }
    EventFate press(int keyCode) {
        return handOut({.kind = EventKind::keyDown, .keyCode = keyCode});
    }
    void clickInAnotherApplication(Point where, EventKind kind = EventKind::leftMouseDown) {
        mouse = where;
        for (const auto& handler : global_.present()) (*handler)({.kind = kind});
    }
    void runPosted() {
        while (!posted_.empty()) {
            const auto task = std::move(posted_.front());
            posted_.pop_front();
            task();
        }
    }
    std::size_t monitorCount() const { return local_.present().size() + global_.present().size(); }

    Point mouse;
    std::vector<EventKind> localKinds;
    std::vector<EventKind> globalKinds;

  private:
    Steps& steps_;
    Registrations<std::function<EventFate(const Event&)>> local_;
    Registrations<std::function<void(const Event&)>> global_;
    std::deque<std::function<void()>> posted_;
};

}  // namespace menubar_popover::testing
