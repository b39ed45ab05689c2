// A popover made of a frameless window, which is given to it. It closes by itself when the window
// stops being the active one: then the user is elsewhere. Main thread.
#pragma once

#include <QObject>
#include <QSize>
#include <QWindow>
#include <functional>
#include <optional>

#include "Clock.h"
#include "ObserverList.h"
#include "PopoverPlatform.h"

namespace tarnbeck {

class QtPopover : public menubar_popover::Popover {
  public:
    // `clock` must outlive it.
    explicit QtPopover(const Clock& clock) : clock_(clock) {}

    // Before it is first shown. The window must outlive it, or take itself away.
    void setWindow(QWindow* window);
    void setContentSize(QSize size) { contentSize_ = size; }

    bool isShown() const override;
    void show(menubar_popover::StatusBarButton& button,
              menubar_popover::Edge preferredEdge) override;
    void performClose(const void* sender) override;
    std::optional<menubar_popover::Rect> windowFrame() const override;
    menubar_popover::Token observeDidClose(std::function<void()> observer) override;

    // It was shown or closed a moment ago: a click that comes now is the second half of a double
    // click, or the one that took the focus away and closed it.
    bool hasJustChanged() const;

  private:
    void place(const QRect& item);
    void activeChanged();
    void visibleChanged(bool visible);

    const Clock& clock_;
    QWindow* window_ = nullptr;
    QSize contentSize_;
    QObject connections_;  // they end with it
    std::optional<SteadyTime> changedAt_;
    ObserverList<> observers_;
};

}  // namespace tarnbeck
