// What changed from one list of snapshots to the next, and how that is told.
#pragma once

#include <string>
#include <vector>

#include "GitRepository.h"
#include "Record.h"
#include "StatusTable.h"

namespace tarnbeck::cli {

struct RepositoryChanges {
    std::vector<RepositorySnapshot> changed;  // new ones, and those that git tells otherwise of
    std::vector<RepositorySnapshot> issues;   // those with other issues or pull requests
    // Those with another verdict on their dependencies; a new check with the same one is none.
    std::vector<RepositorySnapshot> dependencies;
    std::vector<RepositorySnapshot> removed;
};

// Both lists hold each path once. Pure.
RepositoryChanges changesBetween(const std::vector<RepositorySnapshot>& before,
                                 const std::vector<RepositorySnapshot>& after);

// The events of the feed; each is one line with a line feed. Times in UTC in JSON, in the user's
// time zone for people.
class ChangeFeed {
  public:
    enum class Form { forPeople, json };
    ChangeFeed(Form form, TableStyle style) : form_(form), style_(style) {}

    std::string scanStarted(Date at) const;
    std::string scanFinished(Date at, const std::vector<RepositorySnapshot>& repositories) const;
    std::string repository(Date at, const GitRepository& repository) const;
    std::string issues(Date at, const GitRepository& repository) const;
    // People are told nothing while there is no verdict yet.
    std::string dependencies(Date at, const GitRepository& repository) const;
    std::string removed(Date at, const GitRepository& repository) const;

  private:
    Form form_;
    TableStyle style_;
};

}  // namespace tarnbeck::cli
