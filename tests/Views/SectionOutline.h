// A section as lines of text: all that is shown, told and offered, in its order.
#pragma once

#include <string>

#include "SectionContent.h"

namespace tarnbeck::testing {

std::string outline(const SectionContent& content);
std::string outline(const SectionHeader& header);
std::string outline(const Row& row);
std::string outline(const RowAction& action);

}  // namespace tarnbeck::testing
