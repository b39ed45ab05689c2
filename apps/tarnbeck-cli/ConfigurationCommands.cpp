#include <algorithm>

#include <fmt/format.h>

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
    if (!repository) return Failure{"is neither a git repository nor inside one"};
    if (!isValidUtf8(*repository)) return Failure{"its path is not valid UTF-8"};
    return *repository;
}

auto findConfigured(std::vector<std::string>& repoPaths, const std::string& path,
                    const std::string& home) {
    return std::ranges::find_if(repoPaths, [&](const std::string& configured) {
        return absolutePath(configured, home) == path;
    });
}

// The lines of a value, as people write it: a list takes one line an element.
std::vector<std::string> linesOf(const JsonValue& value) {
    if (const auto* text = value.if_string()) {
        return {text->empty() ? "(empty)" : printable(std::string_view(*text))};
    }
    const auto* list = value.if_array();
    if (!list) return {jsonText(value)};
    std::vector<std::string> lines;
    for (const JsonValue& element : *list) {
        lines.push_back(printable(std::string_view(element.as_string())));
    }
    return lines.empty() ? std::vector<std::string>{"(none)"} : lines;
}

std::string namedLines(std::string_view name, const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += fmt::format("{:<30}{}\n", text.empty() ? name : "", line);
    }
    return text;
}

std::string forPeople(const JsonObject& files, const JsonObject& values) {
    std::string text;
    for (const auto& [name, path] : files) {
        const std::string file(path.as_string());
        text += namedLines(name, {printable(file) + (exists(file) ? "" : " (not there yet)")});
    }
    text += "\n";
    for (const auto& [name, value] : values) text += namedLines(name, linesOf(value));
    return text;
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
    print(forPeople(files, values.as_object()));
    return exitSuccess;
}

}  // namespace tarnbeck::cli
