// What git knows of one repository, as rows. Pure, any thread.
#pragma once

#include <string_view>

#include "GitRepository.h"
#include "RowParts.h"
#include "RowSink.h"

namespace tarnbeck {

void emitGitDetails(const SectionContext& context, RowSink& sink);

// Remote branches, tags and stashes: a part of the details.
void emitReferenceSections(const SectionContext& context, RowSink& sink);

// Whether the repository still has the change that a row of this id showed.
bool hasFileChange(const GitRepository& repository, std::string_view rowId);

}  // namespace tarnbeck
