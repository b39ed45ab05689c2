#include "SymbolProvider.h"

#include <QColor>
#include <QMutexLocker>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <optional>

#include "SymbolMask.h"

namespace tarnbeck {
namespace {

constexpr int ordinarySide = 24;
constexpr int largestSide = 2048;  // no picture for a request of gigabytes
constexpr qsizetype bytesKept = 4'194'304;

// A side that is not asked for is as long as the other one.
QSize completed(QSize requested) {
    const int given = std::max(requested.width(), requested.height());
    const int other = given > 0 ? given : ordinarySide;
    const auto side = [&](int length) {
        return std::min(length > 0 ? length : other, largestSide);
    };
    return {side(requested.width()), side(requested.height())};
}

// "rrggbb" or "aarrggbb".
std::optional<QColor> colorOf(const QString& digits) {
    if (digits.size() != 6 && digits.size() != 8) return std::nullopt;
    bool isNumber = false;
    const QRgb value = digits.toUInt(&isNumber, 16);
    if (!isNumber) return std::nullopt;
    return digits.size() == 6 ? QColor::fromRgb(value) : QColor::fromRgba(value);
}

// Null when the text names no symbol in a colour.
QImage colored(const QString& id, QSize size) {
    const QStringList parts = id.split('/');
    if (parts.size() != 2) return {};
    const auto color = colorOf(parts[1]);
    if (!color) return {};
    QImage image = symbolMask(parts[0], size);
    if (image.isNull()) return {};
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), *color);
    return image;
}

QImage nothing(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

}  // namespace

SymbolProvider::SymbolProvider()
    : QQuickImageProvider(QQuickImageProvider::Image), pictures_(bytesKept) {}

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QSize wanted = completed(requestedSize);
    if (size) *size = wanted;
    return picture(id, wanted);
}

QImage SymbolProvider::picture(const QString& id, QSize size) {
    const QString key = id + QString(":%1x%2").arg(size.width()).arg(size.height());
    {
        const QMutexLocker lock(&mutex_);
        if (const QImage* kept = pictures_.object(key)) return *kept;
    }
    QImage drawn = colored(id, size);  // without the lock: others need not wait for it
    if (drawn.isNull()) {
        warnOnce(id);
        return nothing(size);
    }
    const QMutexLocker lock(&mutex_);
    pictures_.insert(key, new QImage(drawn), drawn.sizeInBytes());
    return drawn;
}

void SymbolProvider::warnOnce(const QString& id) {
    {
        const QMutexLocker lock(&mutex_);
        if (warnedOf_.contains(id)) return;
        warnedOf_.insert(id);
    }
    qWarning("No symbol in a colour: %s", qPrintable(id));
}

}  // namespace tarnbeck
