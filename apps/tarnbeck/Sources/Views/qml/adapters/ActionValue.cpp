#include "ActionValue.h"

#include <map>

#include "QtText.h"

namespace tarnbeck {

QVariantList actionValues(const std::vector<RowAction>& actions) {
    QVariantList values;
    std::map<RowActionKind, int> seen;
    for (const RowAction& action : actions) {
        ActionValue value;
        value.kind = static_cast<int>(action.kind);
        value.occurrence = seen[action.kind]++;
        value.symbol = qtText(action.symbol);
        value.help = qtText(action.help);
        value.color = qtText(action.color);
        value.inProgress = action.isInProgress;
        if (action.kind == RowActionKind::copy) {
            value.menuTitle = QStringLiteral("Copy \"%1\"").arg(qtText(action.reference));
        }
        values.append(QVariant::fromValue(value));
    }
    return values;
}

}  // namespace tarnbeck
