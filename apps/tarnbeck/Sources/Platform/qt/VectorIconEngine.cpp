#include "VectorIconEngine.h"

#include <QPainter>
#include <QPixmap>

#include "VectorPainter.h"

namespace tarnbeck {

void VectorIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/,
                             QIcon::State /*state*/) {
    QRectF target({}, QSizeF(image_.width, image_.height).scaled(rect.size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect).center());
    tarnbeck::paint(image_, *painter, target);
}

QPixmap VectorIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
}

QList<QSize> VectorIconEngine::availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) {
    QList<QSize> sizes;
    for (const int height : {22, 32, 44, 64}) {
        sizes.append(QSize(qRound(height * image_.width / image_.height), height));
    }
    return sizes;
}

}  // namespace tarnbeck
