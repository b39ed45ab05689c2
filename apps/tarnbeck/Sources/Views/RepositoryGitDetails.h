// What git knows of one repository, as rows. Pure, any thread.
#pragma once

#include <string_view>

#include "GitRepository.h"
#include "RowSink.h"
#include "SectionContent.h"

namespace tarnbeck {

void emitGitDetails(const SectionInput& input, RowSink& sink);

// Remote branches, tags and stashes: a part of the details.
void emitReferenceSections(const SectionInput& input, RowSink& sink);

// Whether the repository still has the change that a row of this id showed.
bool hasFileChange(const GitRepository& repository, std::string_view rowId);

}  // namespace tarnbeck
