#include <fmt/format.h>

#include <algorithm>

#include "Commands.h"
#include "ExitStatus.h"
#include "FileSystem.h"
#include "Output.h"
#include "Paths.h"
#include "RepositoryJson.h"
#include "RepositorySelection.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

// The repository to add, or why it can't be.
Result<std::string> repositoryToAdd(const std::string& typed, const std::string& home) {
    const std::string path = absolutePath(typed, home);
    if (const auto missing = reasonWhyMissing(path)) return Failure{*missing};
    const auto repository = enclosingRepository(path);
    if (!repository) return Failure{"is not a git repository"};
    if (!isValidUtf8(*repository)) return Failure{"its path is not valid UTF-8"};
    return *repository;
}

auto findConfigured(std::vector<std::string>& repoPaths, const std::string& path,
                    const std::string& home) {
    return std::ranges::find_if(repoPaths, [&](const std::string& configured) {
        return expandingTilde(configured, home) == path;
    });
}

}  // namespace

int runAdd(Companion& companion, const AddArguments& arguments) {
    AppConfiguration configuration = AppConfiguration::load(companion.place());
    int status = exitSuccess;
    std::string done;
    bool changed = false;
    for (const std::string& typed : arguments.paths) {
        const auto repository = repositoryToAdd(typed, companion.home());
        if (!repository) {
            complain(typed + ": " + repository.error());
            status = exitFailure;
            continue;
        }
        auto& paths = configuration.repoPaths;
        const bool known = findConfigured(paths, *repository, companion.home()) != paths.end();
        done += fmt::format("{} {}\n", known ? "Already there:" : "Added", printable(*repository));
        if (known) continue;
        paths.push_back(*repository);
        changed = true;
    }
    if (changed && !configuration.save(companion.place())) return exitFailure;
    print(done);
    return status;
}

int runRemove(Companion& companion, const RemoveArguments& arguments) {
    AppConfiguration configuration = AppConfiguration::load(companion.place());
    int status = exitSuccess;
    std::string done;
    for (const std::string& typed : arguments.paths) {
        const std::string path = absolutePath(typed, companion.home());
        const auto position = findConfigured(configuration.repoPaths, path, companion.home());
        if (position == configuration.repoPaths.end()) {
            complain(typed + ": is not in the configuration");
            status = exitFailure;
            continue;
        }
        configuration.repoPaths.erase(position);
        done += fmt::format("Removed {}\n", printable(path));
    }
    if (!done.empty() && !configuration.save(companion.place())) return exitFailure;
    if (!done.empty() && configuration.repoPaths.empty()) {
        done += "No repository is left: the next start looks for repositories again.\n";
    }
    print(done);
    return status;
}

int runConfig(Companion& companion, const ConfigArguments& arguments) {
    const AppConfiguration configuration = AppConfiguration::load(companion.place());
    const JsonObject files = {{"configuration", companion.place().file()},
                              {"log", companion.log().location()}};
    const JsonValue values = encodedJson(configuration, outputStyle);
    if (arguments.json) {
        print(jsonText(JsonObject{{"files", files}, {"values", values}}) + "\n");
        return exitSuccess;
    }
    std::string text;
    for (const auto& [name, path] : files) {
        const std::string file(path.as_string());
        text += fmt::format("{:<30}{}{}\n", std::string_view(name), printable(file),
                            exists(file) ? "" : " (not there yet)");
    }
    text += "\n";
    for (const auto& [name, value] : values.as_object()) {
        text += fmt::format("{:<30}{}\n", std::string_view(name), jsonText(value));
    }
    print(text);
    return exitSuccess;
}

}  // namespace tarnbeck::cli
