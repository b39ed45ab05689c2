#include "QtMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>

namespace tarnbeck {
namespace {

// An ampersand of a name is no shortcut.
QString titleOf(const MenuItem& item) {
    return QString::fromStdString(item.title).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

void fill(QAction& action, const MenuItem& item) {
    action.setEnabled(item.isEnabled);
    action.setCheckable(item.isChecked.has_value());
    action.setChecked(item.isChecked.value_or(false));
    if (!item.key.empty()) {
        action.setShortcut(
            QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(item.key)));
        action.setShortcutVisibleInContextMenu(true);
    }
}

}  // namespace

std::unique_ptr<QMenu> makeMenu(const std::vector<MenuItem>& items,
                                const std::function<void(std::size_t index)>& onChosen) {
    auto menu = std::make_unique<QMenu>();
    for (std::size_t index = 0; index < items.size(); ++index) {
        if (items[index].isSeparator) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(titleOf(items[index]));
        fill(*action, items[index]);
        QObject::connect(action, &QAction::triggered, menu.get(),
                         [onChosen, index] { onChosen(index); });
    }
    return menu;
}

}  // namespace tarnbeck
