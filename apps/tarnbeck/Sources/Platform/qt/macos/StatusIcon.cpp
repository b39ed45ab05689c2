#include <QIcon>

#include "QtStatusItem.h"
#include "VectorIconEngine.h"

namespace tarnbeck {

QIcon statusIcon(const StatusImage& image) {
    QIcon icon(new VectorIconEngine(image.menuBarImage));
    icon.setIsMask(image.menuBarImage.isTemplate);
    return icon;
}

}  // namespace tarnbeck
