#include "DoctorProbe.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>

#include <fmt/format.h>
#include <unistd.h>

#include "DependencyCommandRunner.h"
#include "DependencyTools.h"
#include "FileSystem.h"
#include "FileSystemWatcher.h"
#include "Output.h"
#include "Paths.h"
#include "Text.h"

extern char** environ;

namespace tarnbeck::cli {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr auto versionTimeout = 10s;
constexpr auto loginTimeout = 20s;

// Runs all tasks in the background, at once, until the last has ended.
void runTogether(Companion& companion, std::vector<Task> tasks) {
    std::size_t open = tasks.size();
    companion.runLoop([&] {
        for (Task& task : tasks) {
            companion.queues().userInitiated([&, task = std::move(task)] {
                task();
                companion.loop().post([&] {
                    if (--open == 0) companion.loop().stop();
                });
            });
        }
    });
}

std::optional<std::string> foundIn(std::string_view searchPath, const std::string& name) {
    std::optional<std::string> found;
    forEachPiece(searchPath, ':', [&](std::string_view folder) {
        const std::string candidate = fmt::format("{}/{}", folder, name);
        if (!found && folder.starts_with('/') && isExecutableFile(candidate)) found = candidate;
    });
    return found;
}

std::optional<std::string> firstExecutable(const std::vector<std::string>& candidates) {
    const auto found = std::ranges::find_if(candidates, isExecutableFile);
    return found == candidates.end() ? std::nullopt : std::optional(*found);
}

std::string value(const Variables& variables, std::string_view name) {
    const auto found = variables.find(name);
    return found == variables.end() ? std::string() : found->second;
}

template <std::size_t count>
std::vector<std::string> thoseThatAreSet(const std::array<std::string_view, count>& names,
                                         const Variables& variables) {
    std::vector<std::string> set;
    for (const std::string_view name : names) {
        if (!value(variables, name).empty()) set.emplace_back(name);
    }
    return set;
}

std::vector<ToolFacts> toolsOn(const Variables& variables, const std::string& home) {
    std::vector<ToolFacts> tools;
    const auto add = [&](const std::string& name, std::optional<std::string> path) {
        std::optional<std::string> elsewhere;
        if (!path) elsewhere = foundIn(value(variables, "PATH"), name);
        tools.push_back({.name = name, .path = std::move(path), .elsewhere = std::move(elsewhere)});
    };
    add("git", firstExecutable({GitCommand::Options{}.executable}));
    add("gh", firstExecutable(GitHubScanner::Options{}.ghCandidates));
    for (const char* name : {"npm", "pnpm", "npx", "python3"}) {
        add(name, foundIn(DependencyCommandRunner::searchPath, name));
    }
    add("uv", firstExecutable(DependencyTools::ordinaryUvCandidates(home)));
    return tools;
}

std::string firstLineOf(const CommandResult& result) {
    const std::string& text = result.stderr.empty() ? result.stdout : result.stderr;
    return text.substr(0, text.find('\n'));
}

void askVersion(ToolFacts& tool, const std::string& home, ProcessLauncher& launcher) {
    const DependencyCommandRunner runner(home, launcher);
    const CommandResult result = runner.runCommand(
        {.executable = *tool.path, .args = {"--version"}, .cwd = "/", .timeout = versionTimeout});
    if (result.launchError) {
        tool.trouble = *result.launchError;
    } else if (result.timedOut) {
        tool.trouble = "it does not answer";
    } else if (result.terminationStatus != 0 || result.stdout.empty()) {
        const std::string words = firstLineOf(result);
        tool.trouble =
            words.empty() ? fmt::format("exit status {}", result.terminationStatus) : words;
    } else {
        tool.version = versionIn(result.stdout);
    }
}

CommandResult loginStatus(const std::string& gh, ImmutableList<std::string> environment,
                          ProcessLauncher& launcher) {
    const auto runner = DependencyCommandRunner::withEnvironment(std::move(environment), launcher);
    return runner.runCommand(
        {.executable = gh, .args = {"auth", "status"}, .cwd = "/", .timeout = loginTimeout});
}

ImmutableList<std::string> asEnvironment(const Variables& variables) {
    std::vector<std::string> entries;
    for (const auto& [name, content] : variables) entries.push_back(name + "=" + content);
    entries.emplace_back("GH_NO_UPDATE_NOTIFIER=1");
    return entries;
}

void askLogin(LoginFacts& login, const std::string& gh, const std::string& home,
              const Variables& variables, ProcessLauncher& launcher) {
    const CommandResult result =
        loginStatus(gh,
                    {"HOME=" + home, "PATH=" + std::string(DependencyCommandRunner::searchPath),
                     "LC_ALL=C", "GH_NO_UPDATE_NOTIFIER=1"},
                    launcher);
    using State = LoginFacts::State;
    const bool holds = result.terminationStatus == 0 && !result.timedOut;
    login.state = result.timedOut ? State::tookTooLong : holds ? State::holds : State::fails;
    if (login.state != State::fails) return;
    login.words = result.launchError ? *result.launchError : firstLineOf(result);
    const CommandResult own = loginStatus(gh, asEnvironment(variables), launcher);
    login.holdsForUser = own.terminationStatus == 0 && !own.timedOut;
}

// Folders that a watch of the repository would take, about: all that are not excluded, and of
// git's own those that are not its store.
std::int64_t foldersToWatch(const std::string& repository) {
    std::int64_t count = 1;
    std::error_code error;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator each(repository, options, error), end;
         !error && each != end; each.increment(error)) {
        std::error_code gone;
        if (each->symlink_status(gone).type() != fs::file_type::directory) continue;
        const std::string name = each->path().filename();
        const bool isStore = name == "objects" && each->path().parent_path().filename() == ".git";
        if (isStore || FileSystemWatcher::defaultExcludes().contains(name)) {
            each.disable_recursion_pending();
        } else {
            ++count;
        }
    }
    return count;
}

std::optional<std::string> excludedNameIn(std::string_view path) {
    std::optional<std::string> name;
    forEachPiece(path, '/', [&](std::string_view component) {
        const bool isExcluded = FileSystemWatcher::defaultExcludes().contains(component);
        if (!name && isExcluded) name = component;
    });
    return name;
}

std::vector<ConfiguredPathFacts> pathsOf(const std::vector<std::string>& configuredPaths,
                                         const std::string& home) {
    std::vector<ConfiguredPathFacts> paths;
    for (const std::string& configured : configuredPaths) {
        const std::string path = expandingTilde(configured, home);
        paths.push_back({.path = path,
                         .exists = exists(path),
                         .isRepository = exists(path + "/.git"),
                         .excludedName = excludedNameIn(path)});
    }
    return paths;
}

WatchFacts watchFactsOf(const std::vector<ConfiguredPathFacts>& paths) {
    WatchFacts facts{.capacity = watchCapacity()};
    if (!facts.capacity) return facts;
    for (const ConfiguredPathFacts& each : paths) {
        if (each.isRepository && !each.excludedName) facts.needed += foldersToWatch(each.path);
    }
    return facts;
}

// Why a new file can't be made in the folder, or in the one that it would be made in.
std::optional<std::string> troubleOfWritingIn(std::string folder) {
    while (!exists(folder) && folder != "/") folder = parentPath(folder);
    if (!isDirectory(folder)) return systemErrorText(ENOTDIR);
    if (access(folder.c_str(), W_OK | X_OK) == 0) return std::nullopt;
    return systemErrorText(errno);
}

FileFacts fileFactsOf(const ConfigurationPlace& place) {
    FileFacts facts{.configuration = place.file(),
                    .configurationExists = exists(place.file()),
                    .folder = place.folder(),
                    .folderTrouble = troubleOfWritingIn(place.folder()),
                    .log = place.folder() + "/scan.log"};
    if (facts.configurationExists) {
        const auto bytes = readFile(place.file());
        if (!bytes) {
            facts.configurationTrouble = bytes.error();
        } else if (const auto read = AppConfiguration::decoded(*bytes); !read) {
            facts.configurationTrouble = read.error();
        }
    }
    if (exists(place.brokenFile())) facts.brokenConfiguration = place.brokenFile();
    if (!exists(facts.log)) {
        facts.logTrouble = facts.folderTrouble;
    } else if (access(facts.log.c_str(), W_OK) != 0) {
        facts.logTrouble = systemErrorText(errno);
    }
    return facts;
}

// The file in which gh keeps what it knows of hosts; a login in a keyring leaves no token there.
bool tokenIsInFileBelow(const std::string& home) {
    const auto text = readFile(home + "/.config/gh/hosts.yml");
    return text && text->find("oauth_token:") != std::string::npos;
}

// What takes no child to know.
DoctorFacts factsAtHand(const ConfigurationPlace& place, const Variables& variables) {
    constexpr std::array<std::string_view, 2> tokens = {"GH_TOKEN", "GITHUB_TOKEN"};
    constexpr std::array<std::string_view, 6> proxies = {"HTTPS_PROXY", "https_proxy", "HTTP_PROXY",
                                                         "http_proxy",  "ALL_PROXY",   "all_proxy"};
    // What is wrong with the file is a finding, and not told besides.
    const AppConfiguration configuration =
        AppConfiguration::load({.home = place.home, .report = [](std::string_view) {}});
    return {.tools = toolsOn(variables, place.home),
            .login = {.tokenIsInFile = tokenIsInFileBelow(place.home),
                      .tokenVariables = thoseThatAreSet(tokens, variables)},
            .environment = {.hasSshAgent = !value(variables, "SSH_AUTH_SOCK").empty(),
                            .proxyVariables = thoseThatAreSet(proxies, variables)},
            .repositories = pathsOf(configuration.repoPaths, place.home),
            .scanDirectories = pathsOf(configuration.scanDirectories, place.home),
            .files = fileFactsOf(place)};
}

}  // namespace

Variables environmentVariables() {
    Variables variables;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text = *entry;
        const std::size_t end = text.find('=');
        if (end != std::string_view::npos) {
            variables.emplace(text.substr(0, end), text.substr(end + 1));
        }
    }
    return variables;
}

DoctorFacts gatheredFacts(Companion& companion, const Variables& variables) {
    ProgressLine progress;
    progress.show("Asking the tools for their versions, and gh for its login");
    const std::string& home = companion.home();
    ProcessLauncher& launcher = companion.launcher();
    DoctorFacts facts = factsAtHand(companion.place(), variables);
    std::vector<Task> tasks;
    for (ToolFacts& tool : facts.tools) {
        if (!tool.path) continue;
        tasks.emplace_back([&] { askVersion(tool, home, launcher); });
        if (tool.name != "gh") continue;
        tasks.emplace_back([&] { askLogin(facts.login, *tool.path, home, variables, launcher); });
    }
    tasks.emplace_back([&] { facts.watching = watchFactsOf(facts.repositories); });
    runTogether(companion, std::move(tasks));
    return facts;
}

}  // namespace tarnbeck::cli
