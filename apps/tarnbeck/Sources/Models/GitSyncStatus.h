// How the current branch stands to its upstream branch.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <boost/json/fwd.hpp>

namespace tarnbeck {

struct JsonStyle;

struct GitSyncStatus {
    struct UpToDate {
        std::string upstream;
        bool operator==(const UpToDate&) const = default;
    };
    struct Ahead {
        std::string upstream;
        std::int64_t count = 0;
        bool operator==(const Ahead&) const = default;
    };
    struct Behind {
        std::string upstream;
        std::int64_t count = 0;
        bool operator==(const Behind&) const = default;
    };
    struct Diverged {
        std::string upstream;
        std::int64_t ahead = 0;
        std::int64_t behind = 0;
        bool operator==(const Diverged&) const = default;
    };
    struct NoUpstream {
        bool operator==(const NoUpstream&) const = default;
    };
    struct Unknown {
        bool operator==(const Unknown&) const = default;
    };

    using Case = std::variant<Unknown, UpToDate, Ahead, Behind, Diverged, NoUpstream>;

    GitSyncStatus() = default;
    template <class Kind>
        requires std::is_constructible_v<Case, Kind>
    GitSyncStatus(Kind kind) : value(std::move(kind)) {}

    Case value;

    template <class Kind>
    bool is() const {
        return std::holds_alternative<Kind>(value);
    }

    // "upToDate", "ahead", "behind", "diverged", "noUpstream" or "unknown".
    std::string_view caseName() const;
    // "Up to date", "Ahead 2", "Behind 3", "Diverged 2↑ 3↓", "No upstream" or "Unknown".
    std::string badgeValue() const;
    // "ahead 2", "behind 3" or "diverged (2↑ 3↓)"; absent for the rest.
    std::optional<std::string> summaryLabel() const;

    // {"state": the case name, and the payload under its names}
    boost::json::value encodedJson(const JsonStyle& style) const;

    bool operator==(const GitSyncStatus&) const = default;
};

}  // namespace tarnbeck

template <>
struct std::hash<tarnbeck::GitSyncStatus> {
    std::size_t operator()(const tarnbeck::GitSyncStatus& status) const;
};
