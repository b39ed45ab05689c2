// A `RowAction` as QML sees it: what is drawn, and nothing of what it refers to.
#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <vector>

#include "Row.h"

namespace tarnbeck {

struct ActionValue {
    Q_GADGET
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(int occurrence MEMBER occurrence)  // among the actions of this kind
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString help MEMBER help)
    Q_PROPERTY(QString color MEMBER color)
    Q_PROPERTY(bool inProgress MEMBER inProgress)
    Q_PROPERTY(QString menuTitle MEMBER menuTitle)  // of a context action; empty: none

  public:
    int kind = 0;
    int occurrence = 0;
    QString symbol;
    QString help;
    QString color;
    bool inProgress = false;
    QString menuTitle;
};

QVariantList actionValues(const std::vector<RowAction>& actions);

}  // namespace tarnbeck
