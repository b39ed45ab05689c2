#include "QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tarnbeck {

void QtClipboard::setString(std::string_view text) {
    QGuiApplication::clipboard()->setText(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace tarnbeck
