// `image://symbol/NAME/rrggbb` and `image://symbol/NAME/aarrggbb` in QML: a symbol of
// `symbolNames` in one colour, of `sourceSize` device pixels.
#pragma once

#include <QCache>
#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>
#include <QSet>
#include <QSize>
#include <QString>

namespace tarnbeck {

// Any thread, several at once: Qt asks from those that read pictures, and from the main thread.
class SymbolProvider : public QQuickImageProvider {
  public:
    SymbolProvider();

    // What it takes to be asked for a symbol of 24 pixels where no size is given. For a name that
    // is no symbol, or a colour that is none, a picture with nothing on it, and one line of warning
    // for each such text.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    QImage picture(const QString& id, QSize size);
    void warnOnce(const QString& id);

    QMutex mutex_;                      // guards what follows
    QCache<QString, QImage> pictures_;  // by text and size; costs are bytes
    QSet<QString> warnedOf_;
};

}  // namespace tarnbeck
