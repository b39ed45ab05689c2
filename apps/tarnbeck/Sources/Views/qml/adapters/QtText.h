// From the texts of the logic to Qt's. Bytes that are not UTF-8 become replacement characters, so
// such a text is for showing only, and never comes back.
#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <string_view>
#include <vector>

#include "StatusColor.h"

namespace tarnbeck {

inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QString qtText(StatusColor color) {
    return qtText(rawValue(color));
}

inline QStringList qtTexts(const std::vector<std::string>& texts) {
    QStringList result;
    result.reserve(static_cast<qsizetype>(texts.size()));
    for (const std::string& text : texts) result.append(qtText(text));
    return result;
}

inline std::string utf8Text(const QString& text) {
    return text.toStdString();
}

}  // namespace tarnbeck
