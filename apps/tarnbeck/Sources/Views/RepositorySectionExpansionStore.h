// Which subsections and branches were open, by repository, from run to run. Main thread.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "UserDefaults.h"

namespace tarnbeck {

struct RepositorySectionExpansionStore {
    // From repository path to what of it is open, by a key.
    using State = std::map<std::string, std::map<std::string, bool>>;

    UserDefaults& userDefaults;
    std::string persistedBranchExpansionKey = "ui.branchChangesExpandedByRepo.v1";
    std::string persistedSubsectionExpansionKey = "ui.subsectionExpandedByRepo.v1";

    // Empty where there is nothing, or nothing that can be read.
    State loadDictionaryState(std::string_view forKey) const;
    // What can't be encoded leaves the old value.
    void saveDictionaryState(const State& state, std::string_view forKey) const;
};

}  // namespace tarnbeck
