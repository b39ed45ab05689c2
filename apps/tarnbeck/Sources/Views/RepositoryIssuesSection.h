// The open issues and pull requests of one repository, as rows. Pure, any thread.
#pragma once

#include "RowSink.h"
#include "SectionContent.h"

namespace tarnbeck {

void emitIssuesSection(const SectionInput& input, RowSink& sink);

}  // namespace tarnbeck
