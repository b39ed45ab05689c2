// What a popover of the menu bar needs of the windowing system. All of it on the main thread; all
// lengths are points of the screen, counted from the same corner everywhere.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace menubar_popover {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;

    // The left and the lower-numbered edge belong to it, the others do not.
    bool contains(Point point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
};

// The side of the button at which the popover is shown.
enum class Edge { top, bottom, left, right };

enum class EventKind { leftMouseDown, rightMouseDown, keyDown };

struct Event {
    EventKind kind = EventKind::leftMouseDown;
    int keyCode = 0;  // of keyDown, as macOS counts keys: Escape is 53
    bool operator==(const Event&) const = default;
};

inline constexpr int escapeKeyCode = 53;

// What becomes of an event that a local monitor has seen.
enum class EventFate { goesOn, isSwallowed };

// Something goes on as long as one holds this.
using Token = std::shared_ptr<void>;

// The button of a status item.
class StatusBarButton {
  public:
    StatusBarButton() = default;
    StatusBarButton(const StatusBarButton&) = delete;
    StatusBarButton& operator=(const StatusBarButton&) = delete;
    virtual ~StatusBarButton() = default;

    // Its bounds on the screen; absent where it has no window, or its place is not known.
    virtual std::optional<Rect> screenFrame() const = 0;
};

class Popover {
  public:
    Popover() = default;
    Popover(const Popover&) = delete;
    Popover& operator=(const Popover&) = delete;
    virtual ~Popover() = default;

    virtual bool isShown() const = 0;
    // Relative to the button's bounds.
    virtual void show(StatusBarButton& button, Edge preferredEdge) = 0;
    // May still be shown when this returns: the notification tells when it has closed. `sender` is
    // who asks, or null.
    virtual void performClose(const void* sender) = 0;
    // The frame of its own window on the screen; absent where that can't be found.
    virtual std::optional<Rect> windowFrame() const = 0;
    // `observer` is told each time that it has closed, by whatever path.
    [[nodiscard]] virtual Token observeDidClose(std::function<void()> observer) = 0;
};

// A handler may give up its own token.
class PopoverPlatform {
  public:
    PopoverPlatform() = default;
    PopoverPlatform(const PopoverPlatform&) = delete;
    PopoverPlatform& operator=(const PopoverPlatform&) = delete;
    virtual ~PopoverPlatform() = default;

    // Events of this application, before it has them.
    [[nodiscard]] virtual Token addLocalMonitor(const std::vector<EventKind>& kinds,
                                                std::function<EventFate(const Event&)> handler) = 0;
    // Events of other applications, as far as the system shows them.
    [[nodiscard]] virtual Token addGlobalMonitor(const std::vector<EventKind>& kinds,
                                                 std::function<void(const Event&)> handler) = 0;
    virtual Point mouseLocation() const = 0;
    virtual void activateApplication() = 0;
    // Runs the task on the main thread, after the present one.
    virtual void post(std::function<void()> task) = 0;
};

}  // namespace menubar_popover
