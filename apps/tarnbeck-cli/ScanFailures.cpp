#include "ScanFailures.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace tarnbeck::cli {
namespace {

constexpr std::string_view dash = " — ";
constexpr std::string_view emptyRemark = " (exit 0 but no stdout)";

bool tellsOfFailedCommand(std::string_view message) {
    constexpr std::array<std::string_view, 4> families = {"FAIL(", "EMPTY git", "TIMEOUT git",
                                                          "EXCEPTION git"};
    return std::ranges::any_of(
        families, [&](std::string_view family) { return message.starts_with(family); });
}

// "git status" of "… git status at /path…".
std::string_view gitCommandIn(std::string_view line) {
    const std::size_t begin = std::min(line.find("git "), line.size());
    const std::string_view rest = line.substr(begin);
    return rest.substr(0, rest.find(" at "));
}

std::string_view firstLineBehindDash(std::string_view line) {
    const std::size_t position = line.find(dash);
    if (position == std::string_view::npos) return {};
    const std::string_view rest = line.substr(position + dash.size());
    return rest.substr(0, rest.find('\n'));
}

}  // namespace

ScanFailures::ScanFailures(ScanLog& log)
    : observation_(log.observe([this](std::string_view message) { note(message); })) {}

void ScanFailures::note(std::string_view message) {
    if (!tellsOfFailedCommand(message)) return;
    const std::lock_guard lock(mutex_);
    if (gitCommandIn(message).starts_with("git fetch ")) {
        failedFetches_.emplace_back(message);
    } else {
        lastFailure_[std::string(pathInFailure(message))] = message;
    }
}

std::vector<SelectionProblem> ScanFailures::fetchProblems() const {
    const std::lock_guard lock(mutex_);
    std::vector<SelectionProblem> problems;
    for (const std::string& line : failedFetches_) {
        problems.push_back({std::string(pathInFailure(line)),
                            "could not be fetched: " + failureInWords(line), false});
    }
    return problems;
}

void ScanFailures::forget() {
    const std::lock_guard lock(mutex_);
    lastFailure_.clear();
    failedFetches_.clear();
}

std::string ScanFailures::reasonFor(const std::string& path) const {
    if (const auto reason = reasonWhyNoRepository(path)) return *reason;
    const std::lock_guard lock(mutex_);
    const auto line = lastFailure_.find(path);
    if (line == lastFailure_.end()) return "could not be scanned";
    return failureInWords(line->second);
}

std::string_view pathInFailure(std::string_view line) {
    constexpr std::string_view at = " at ";
    const std::size_t position = line.find(at);
    if (position == std::string_view::npos) return {};
    std::string_view rest = line.substr(position + at.size());
    if (rest.ends_with(emptyRemark)) rest.remove_suffix(emptyRemark.size());
    return rest.substr(0, rest.find(dash));
}

std::string failureInWords(std::string_view line) {
    const std::string_view command = gitCommandIn(line);
    const std::string_view said = firstLineBehindDash(line);
    if (line.starts_with("TIMEOUT ")) return fmt::format("{} took too long", command);
    if (line.starts_with("EMPTY ")) return fmt::format("{} printed nothing", command);
    if (line.starts_with("EXCEPTION ")) return fmt::format("git can't be started: {}", said);
    if (said.find("ambiguous argument 'HEAD'") != std::string_view::npos) {
        return "has no commit yet on its current branch";
    }
    if (said.find("not a git repository") != std::string_view::npos) {
        return fmt::format("its .git is damaged, git says: {}", said);
    }
    const std::size_t opening = line.find('(') + 1;
    const std::string_view status = line.substr(opening, line.find(')') - opening);
    return fmt::format("{} ({}, exit status {})", said.empty() ? "git failed" : said, command,
                       status);
}

}  // namespace tarnbeck::cli
