// What is the same on all systems; what listens to them stands in their own folders.
#include "Appearance.h"

namespace tarnbeck {

void Appearance::set(bool isDark, bool reducesMotion) {
    if (isDark == isDark_ && reducesMotion == reducesMotion_) return;
    isDark_ = isDark;
    reducesMotion_ = reducesMotion;
    Q_EMIT changed();
}

}  // namespace tarnbeck
