// A menu of plain values as a window of Qt's. Main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "StatusItem.h"

class QMenu;

namespace tarnbeck {

// Not shown yet. `onChosen` is told the place in the list.
std::unique_ptr<QMenu> makeMenu(const std::vector<MenuItem>& items,
                                const std::function<void(std::size_t index)>& onChosen);

}  // namespace tarnbeck
