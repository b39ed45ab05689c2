// The header of one repository's section. Pure, any thread.
#pragma once

#include <optional>

#include "MainViewContent.h"
#include "RowParts.h"

namespace tarnbeck {

// The domain whose flags these are.
DomainMode domainOf(const SectionFlags& flags);

SectionHeader sectionHeader(const SectionContext& context);

}  // namespace tarnbeck
