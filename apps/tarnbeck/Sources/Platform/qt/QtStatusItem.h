// The application's item in the tray of a panel, or in the menu bar. Main thread.
#pragma once

#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>

#include "QtPopover.h"
#include "StatusItem.h"

class QMenu;

namespace tarnbeck {

// Draws the item's picture; each system has its own kind.
QIcon statusIcon(const StatusImage& image);

class QtStatusItem : public StatusItem {
  public:
    // The popover that its clicks open, which is closed when its menu opens; it must outlive this.
    explicit QtStatusItem(QtPopover& popover);
    ~QtStatusItem() override;

    std::shared_ptr<StatusItemButton> button() const override;
    void setVisible(bool visible) override;
    void popUpMenu(const std::vector<MenuItem>& items,
                   const std::function<void(std::size_t index)>& onChosen) override;
    double thickness() const override;
    TextMeasurement textMeasurement() const override;

    // What the tray tells of.
    void activated(QSystemTrayIcon::ActivationReason reason);
    // The click that is being handled.
    std::optional<ClickEvent> currentEvent() const;
    // How often a picture was handed to the system.
    int drawnImages() const;

  private:
    class Button;
    class AppearanceWatch;

    QtPopover& popover_;
    std::shared_ptr<Button> button_;
    std::unique_ptr<AppearanceWatch> appearanceWatch_;
    std::unique_ptr<QMenu> menu_;
};

}  // namespace tarnbeck
