// What filtering, sorting and counting ask of a repository. Each fact is worked out when it is
// first asked for, and kept for as long as the snapshot is the one that is shown: with thousands of
// repositories only what has changed costs anything. Main thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "CaseInsensitiveSearch.h"
#include "GitRepository.h"
#include "MainViewContent.h"
#include "NameCollator.h"

namespace tarnbeck {

// The issue in which a bot keeps its list of updates. Every repository with such a bot has one: it
// does not count as work.
bool isDashboardIssue(const GitHubIssue& issue);

class RepositoryFacts {
  public:
    struct IssueCounts {
        std::int64_t real = 0;
        std::int64_t dashboard = 0;
        std::int64_t pullRequests = 0;
        bool operator==(const IssueCounts&) const = default;
    };

    // `repository` must outlive it.
    explicit RepositoryFacts(const GitRepository& repository) : repository_(repository) {}

    const GitRepository& repository() const { return repository_; }
    bool needsAttention(DomainMode domain);
    bool needsGitAttention();
    bool needsDependencyAttention();
    // There are real issues, or pull requests.
    bool needsIssueAttention();
    const IssueCounts& issueCounts();
    // Of the issue or pull request that was touched last; without those that have no date.
    std::optional<std::chrono::sys_seconds> latestIssueActivityDate();
    // See `NameCollator::sortKey`; `collator` is the same one each time.
    const std::string& nameKey(const NameCollator& collator);
    // What is looked for is found in a name, a title, a label or a path of the repository.
    bool matches(const CaseInsensitiveSearch& search);
    // What `matches` remembers is as large as all those texts.
    void dropSearchText() { searchText_ = {}; }

  private:
    template <class Value>
    class Remembered {
      public:
        template <class Work>
        const Value& orElse(Work work) {
            if (!value_) value_.emplace(work());
            return *value_;
        }

      private:
        std::optional<Value> value_;
    };

    const GitRepository& repository_;
    Remembered<bool> needsGitAttention_;
    Remembered<bool> needsDependencyAttention_;
    Remembered<IssueCounts> issueCounts_;
    Remembered<std::optional<std::chrono::sys_seconds>> latestIssueActivityDate_;
    Remembered<std::string> nameKey_;
    Remembered<std::string> searchText_;
};

// The facts of the snapshots that are shown. It keeps no snapshot alive.
class RepositoryFactsCache {
  public:
    // Holds until the snapshot goes, or until the next call of `dropReplaced`.
    RepositoryFacts& of(const RepositorySnapshot& repository);
    // Nothing is searched for any more.
    void dropSearchTexts();
    // Drops those of snapshots that nobody holds any more, when there are more than `present`.
    void dropReplaced(std::size_t present);

  private:
    struct Entry {
        std::weak_ptr<const GitRepository> repository;
        RepositoryFacts facts;
    };

    std::unordered_map<const GitRepository*, Entry> entries_;
};

}  // namespace tarnbeck
