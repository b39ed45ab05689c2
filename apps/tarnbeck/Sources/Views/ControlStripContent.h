// The words, symbols and states of the control strip. Pure, any thread.
#pragma once

#include <span>
#include <string>

#include "MainViewContent.h"

namespace tarnbeck {

struct ControlStripInput {
    ViewMode viewMode = ViewMode::columns;
    std::span<const SortMode> sortModes;       // in the order of the menu
    SortMode sortMode = SortMode::dirtyFirst;  // the one in use
    bool isAwake = false;
    std::string awakeFailure;
    FilterMode filter = FilterMode::dirty;
    DomainMode domain = DomainMode::git;
    std::string searchText;
};

ControlStrip controlStrip(const ControlStripInput& input);

}  // namespace tarnbeck
