#include <QIcon>

#include "QtStatusItem.h"
#include "VectorIconEngine.h"

namespace tarnbeck {

// Slots are square, and nobody knows the colour of the panel.
QIcon statusIcon(const StatusImage& image) {
    return QIcon(new VectorIconEngine(image.tile));
}

}  // namespace tarnbeck
