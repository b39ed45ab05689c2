// The program that stands in for `gh`, its plays, and how it was called.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class RecordedGh {
  public:
    static constexpr const char* executable = RECORDED_GH;

    // What every call for the resource ("issue" or "pr") plays: a role, and what it prints.
    void plays(std::string_view resource, std::string_view role, std::string_view content = "") {
        home_.write(fmt::format("gh/plays/{}", resource), fmt::format("{}\n{}", role, content));
    }
    // What the first, the second … call for the resource plays instead.
    void playsOnce(std::string_view resource, int call, std::string_view role,
                   std::string_view content = "") {
        plays(fmt::format("{}.{}", resource, call), role, content);
    }

    const std::string& home() const { return home_.path(); }

    // How the first, the second … call for the resource was made.
    std::string seen(std::string_view resource, int call) const {
        return contentOf(home_ / fmt::format("gh/seen/{}.{}", resource, call));
    }
    int calls(std::string_view resource) const {
        int count = 0;
        while (std::filesystem::exists(home_ / fmt::format("gh/seen/{}.{}", resource, count + 1))) {
            ++count;
        }
        return count;
    }

  private:
    TemporaryFolder home_;
};

// What `gh` prints of one issue, and of one pull request.
inline std::string ghIssue(int number, std::string_view title) {
    return fmt::format(
        R"({{"author":{{"id":"x","is_bot":false,"login":"ann","name":"Ann"}},)"
        R"("createdAt":"2026-02-01T08:00:00Z","labels":[{{"id":"l","name":"bug",)"
        R"("description":"","color":"d73a4a"}}],"number":{},"state":"OPEN","title":"{}",)"
        R"("updatedAt":"2026-02-02T09:00:00Z","url":"https://github.com/owner/repo/issues/{}"}})",
        number, title, number);
}

inline std::string ghPullRequest(int number, std::string_view title, bool isDraft = false) {
    return fmt::format(
        R"({{"author":{{"is_bot":true,"login":"app/robot"}},"createdAt":"2026-02-01T08:00:00Z",)"
        R"("isDraft":{},"labels":[],"number":{},"state":"OPEN","title":"{}",)"
        R"("updatedAt":"2026-02-02T09:00:00Z","url":"https://github.com/owner/repo/pull/{}"}})",
        isDraft, number, title, number);
}

}  // namespace tarnbeck::testing
