// The open issues and pull requests of one repository, as rows. Pure, any thread.
#pragma once

#include "RowParts.h"
#include "RowSink.h"

namespace tarnbeck {

void emitIssuesSection(const SectionContext& context, RowSink& sink);

}  // namespace tarnbeck
