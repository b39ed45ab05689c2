#include "SymbolMask.h"

namespace tarnbeck {

// There is no set of symbols that every desktop has.
QImage symbolMask(const QString& name, QSize size) {
    return drawnSymbolMask(name, size);
}

}  // namespace tarnbeck
