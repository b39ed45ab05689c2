// An item in the menu bar, or in the tray of a panel. Main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "PopoverPlatform.h"
#include "VectorImage.h"

namespace tarnbeck {

enum class ClickKind { leftMouseUp, rightMouseUp };

struct ClickEvent {
    ClickKind kind = ClickKind::leftMouseUp;
    bool controlKeyIsDown = false;
    bool operator==(const ClickEvent&) const = default;
};

struct ScreenSize {
    double width = 0;
    double height = 0;
    bool operator==(const ScreenSize&) const = default;
};

// What an item looks like: in a menu bar, and in a square slot of a panel.
struct StatusImage {
    VectorImage menuBarImage;
    VectorImage tile;
    std::string toolTip;
};

// One row of a menu.
struct MenuItem {
    std::string title;
    bool isEnabled = true;
    std::optional<bool> isChecked;  // absent: it can't be
    std::string key;                // one letter, with the command key; empty: none
    bool isSeparator = false;

    static MenuItem separator() { return {.isEnabled = false, .isSeparator = true}; }
    bool operator==(const MenuItem&) const = default;
};

class StatusItemButton : public menubar_popover::StatusBarButton {
  public:
    // `action` is called at each click of one of these kinds, and of no other.
    virtual void setAction(std::vector<ClickKind> on, std::function<void()> action) = 0;
    virtual void setImage(const StatusImage& image) = 0;
    // Of the screen that it is on.
    virtual std::optional<ScreenSize> screenVisibleFrame() const = 0;
};

class StatusItem {
  public:
    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    // Null where the system gave none.
    virtual std::shared_ptr<StatusItemButton> button() const = 0;
    virtual void setVisible(bool visible) = 0;
    // Shows a menu until it closes; none stays set, so that clicks reach the action again. What is
    // chosen is told by its place in the list. May return before.
    virtual void popUpMenu(const std::vector<MenuItem>& items,
                           const std::function<void(std::size_t index)>& onChosen) = 0;
    virtual double thickness() const = 0;
    virtual TextMeasurement textMeasurement() const = 0;
};

}  // namespace tarnbeck
