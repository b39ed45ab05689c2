#include "GitSyncStatus.h"

#include <fmt/format.h>

#include "JsonCoding.h"
#include "Overloaded.h"
#include "Record.h"

namespace tarnbeck {

std::string_view GitSyncStatus::caseName() const {
    return std::visit(Overloaded{
                          [](const UpToDate&) { return "upToDate"; },
                          [](const Ahead&) { return "ahead"; },
                          [](const Behind&) { return "behind"; },
                          [](const Diverged&) { return "diverged"; },
                          [](const NoUpstream&) { return "noUpstream"; },
                          [](const Unknown&) { return "unknown"; },
                      },
                      value);
}

std::string GitSyncStatus::badgeValue() const {
    return std::visit(
        Overloaded{
            [](const UpToDate&) -> std::string { return "Up to date"; },
            [](const Ahead& status) { return fmt::format("Ahead {}", status.count); },
            [](const Behind& status) { return fmt::format("Behind {}", status.count); },
            [](const Diverged& status) {
                return fmt::format("Diverged {}↑ {}↓", status.ahead, status.behind);
            },
            [](const NoUpstream&) -> std::string { return "No upstream"; },
            [](const Unknown&) -> std::string { return "Unknown"; },
        },
        value);
}

std::optional<std::string> GitSyncStatus::summaryLabel() const {
    using Label = std::optional<std::string>;
    return std::visit(
        Overloaded{
            [](const Ahead& status) -> Label { return fmt::format("ahead {}", status.count); },
            [](const Behind& status) -> Label { return fmt::format("behind {}", status.count); },
            [](const Diverged& status) -> Label {
                return fmt::format("diverged ({}↑ {}↓)", status.ahead, status.behind);
            },
            [](const UpToDate&) -> Label { return std::nullopt; },
            [](const NoUpstream&) -> Label { return std::nullopt; },
            [](const Unknown&) -> Label { return std::nullopt; },
        },
        value);
}

JsonValue GitSyncStatus::encodedJson(const JsonStyle& /*style*/) const {
    JsonObject object{{"state", caseName()}};
    std::visit(Overloaded{
                   [&](const UpToDate& status) { object["upstream"] = status.upstream; },
                   [&](const Ahead& status) {
                       object["upstream"] = status.upstream;
                       object["count"] = status.count;
                   },
                   [&](const Behind& status) {
                       object["upstream"] = status.upstream;
                       object["count"] = status.count;
                   },
                   [&](const Diverged& status) {
                       object["upstream"] = status.upstream;
                       object["ahead"] = status.ahead;
                       object["behind"] = status.behind;
                   },
                   [](const NoUpstream&) {},
                   [](const Unknown&) {},
               },
               value);
    return object;
}

}  // namespace tarnbeck

std::size_t std::hash<tarnbeck::GitSyncStatus>::operator()(
    const tarnbeck::GitSyncStatus& status) const {
    using tarnbeck::GitSyncStatus, tarnbeck::combinedHash, tarnbeck::hashValue;
    const auto payload = std::visit(
        tarnbeck::Overloaded{
            [](const GitSyncStatus::UpToDate& kind) { return hashValue(kind.upstream); },
            [](const GitSyncStatus::Ahead& kind) {
                return combinedHash(hashValue(kind.upstream), hashValue(kind.count));
            },
            [](const GitSyncStatus::Behind& kind) {
                return combinedHash(hashValue(kind.upstream), hashValue(kind.count));
            },
            [](const GitSyncStatus::Diverged& kind) {
                return combinedHash(combinedHash(hashValue(kind.upstream), hashValue(kind.ahead)),
                                    hashValue(kind.behind));
            },
            [](const GitSyncStatus::NoUpstream&) { return std::size_t{0}; },
            [](const GitSyncStatus::Unknown&) { return std::size_t{0}; },
        },
        status.value);
    return combinedHash(status.value.index(), payload);
}
