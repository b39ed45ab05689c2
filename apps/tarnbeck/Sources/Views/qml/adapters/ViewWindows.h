// The windows that show views: made of QML, which draws what the views say. Main thread; owns the
// QML engine, which is made when the first window is.
#pragma once

#include <QWindow>
#include <memory>

#include "MainView.h"

namespace tarnbeck {

class ViewWindows {
  public:
    ViewWindows();
    ~ViewWindows();
    ViewWindows(const ViewWindows&) = delete;
    ViewWindows& operator=(const ViewWindows&) = delete;

    // The main window, titled "Tarnbeck", 1200 by 850, not shown yet; its view lives as long as it.
    // Closing hides it.
    QWindow* mainWindow(std::unique_ptr<MainView> view);
    // The popover's window: frameless, above others, not shown yet. Made at the first call.
    QWindow* popoverWindow();
    // What the popover shows from now on; null: nothing, at no cost.
    void setPopoverView(std::unique_ptr<MainView> view);

  private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace tarnbeck
