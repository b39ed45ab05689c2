#include "InstallChoice.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "DependencyReport.h"
#include "Paths.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

using Results = std::vector<DependencyEcosystemResult>;

// The folder of a result's project.
std::string folderOf(const DependencyEcosystemResult& result, const std::string& repoPath) {
    return standardized(shownProject(result), repoPath);
}

Results resultsIn(const std::string& folder, const ProjectQuestion& question) {
    Results results;
    std::ranges::copy_if(
        question.summary.ecosystems, std::back_inserter(results),
        [&](const auto& result) { return folderOf(result, question.repoPath) == folder; });
    std::ranges::stable_sort(results, {}, &DependencyEcosystemResult::ecosystem);
    return results;
}

bool allAreOfOneProject(const DependencySummary& summary) {
    return std::ranges::all_of(summary.ecosystems, [&](const auto& result) {
        return shownProject(result) == shownProject(*summary.ecosystems.begin());
    });
}

// "  web  Node, npm", a line each.
std::string listOf(const DependencySummary& summary) {
    std::string lines;
    for (const DependencyEcosystemResult& result : summary.ecosystems) {
        lines += fmt::format("\n{}  {}, {}", printable(shownProject(result)),
                             rawValue(result.ecosystem), printable(result.manager));
    }
    return lines;
}

// Verbs that a summary begins with, and what they are when that is done.
constexpr auto doneVerbs = std::to_array<std::pair<std::string_view, std::string_view>>(
    {{"Update ", "Updated "}, {"Align ", "Aligned "}, {"Sync ", "Synced "}});

}  // namespace

Result<std::vector<DependencyEcosystemResult>> chosenProject(const ProjectQuestion& question) {
    const auto& projects = question.summary.ecosystems;
    if (projects.empty()) return Failure{"there is no Node or Python project in it"};
    if (question.named) {
        Results results = resultsIn(standardized(*question.named, question.repoPath), question);
        if (!results.empty()) return results;
        return Failure{fmt::format("there is no project \"{}\" in it; there are:{}",
                                   printable(*question.named), listOf(question.summary))};
    }
    Results results = resultsIn(question.folder, question);
    if (!results.empty()) return results;
    if (allAreOfOneProject(question.summary)) {
        return resultsIn(folderOf(*projects.begin(), question.repoPath), question);
    }
    return Failure{"more than one project is in it; name one behind the path:" +
                   listOf(question.summary)};
}

std::string planText(const DependencyInstallPlan& plan) {
    std::string text = printable(plan.summary) + "\n";
    std::string_view folder;
    for (const DependencyInstallStep& step : plan.steps) {
        if (step.cwd != folder) text += fmt::format("  in {}:\n", printable(step.cwd));
        folder = step.cwd;
        text += fmt::format("    $ {}\n", printable(step.displayCommand));
    }
    return text;
}

std::string doneInWords(std::string_view planSummary) {
    for (const auto& [verb, done] : doneVerbs) {
        if (!planSummary.starts_with(verb)) continue;
        std::string words = std::string(done) + printable(planSummary.substr(verb.size()));
        constexpr std::string_view second = "Python dependencies + upgrade";
        if (words.starts_with("Synced " + std::string(second))) {
            words.insert(done.size() + second.size(), "d");
        }
        return words;
    }
    return printable(planSummary);
}

std::optional<std::string> stepFailureInWords(const StepOutcome& outcome) {
    const CommandResult& result = outcome.result;
    const std::string command = printable(outcome.step.displayCommand);
    if (result.launchError) {
        return fmt::format("{}: {}", command, printable(*result.launchError));
    }
    if (result.timedOut) {
        const auto minutes = std::chrono::floor<std::chrono::minutes>(outcome.timeout);
        return fmt::format("{} was ended: it took longer than {} minutes", command,
                           minutes.count());
    }
    if (result.terminationStatus == 0) return std::nullopt;
    const bool isByName = outcome.step.executable == "/usr/bin/env" && !outcome.step.args.empty();
    if (isByName && result.terminationStatus == 127) {
        return fmt::format("{}: {}, or what it runs on, is not found in {}", command,
                           printable(outcome.step.args.front()),
                           DependencyCommandRunner::searchPath);
    }
    return fmt::format("{} failed (exit status {})", command, result.terminationStatus);
}

}  // namespace tarnbeck::cli
