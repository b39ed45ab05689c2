// The shape of a symbol, before it is given a colour: the system's own where it has one, else what
// is drawn in `symbols/`.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace tarnbeck {

// The symbol in the middle of an image of `size` device pixels; its opacity is what counts, not its
// colour. Null for a name that is no symbol. Any thread, several at once.
QImage symbolMask(const QString& name, QSize size);

// The same from what is drawn in `symbols/`, on every system. It is fitted to the pixels: where a
// stroke is an odd number of pixels wide, its middle is the middle of a pixel, and the outermost
// edges end where pixels do.
QImage drawnSymbolMask(const QString& name, QSize size);

}  // namespace tarnbeck
