#include "CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "ExitStatus.h"

namespace tarnbeck::cli {
namespace {

constexpr std::array<std::string_view, 6> commands = {"status", "watch",  "discover",
                                                      "add",    "remove", "config"};
constexpr std::array<std::string_view, 4> globalFlags = {"-h", "--help", "--version", "--help-all"};

// `tarnbeck-cli ~/projects` means `tarnbeck-cli status ~/projects`.
void addDefaultCommand(std::vector<std::string>& words) {
    if (!words.empty() && (std::ranges::find(commands, words[0]) != commands.end() ||
                           std::ranges::find(globalFlags, words[0]) != globalFlags.end())) {
        return;
    }
    words.insert(words.begin(), "status");
}

void addColor(CLI::App* command, ColorChoice& color) {
    static const std::map<std::string, ColorChoice> names = {{"auto", ColorChoice::automatic},
                                                             {"always", ColorChoice::always},
                                                             {"never", ColorChoice::never}};
    command->add_option("--color", color, "auto (a terminal without NO_COLOR), always or never")
        ->transform(CLI::CheckedTransformer(names).description(""))
        ->type_name("WHEN");
}

// One command: its words on the command line, and the arguments that come of them.
template <class CommandArguments>
class Command {
  public:
    Command(CLI::App& app, const std::string& name, const std::string& description)
        : app_(app.add_subcommand(name, description)) {}

    CLI::App* operator->() const { return app_; }
    CLI::App* app() const { return app_; }
    CommandArguments arguments;

    bool isChosen() const { return app_->parsed(); }

  private:
    CLI::App* app_;
};

}  // namespace

std::variant<Arguments, int> parsedCommandLine(std::vector<std::string> words) {
    addDefaultCommand(words);
    CLI::App app("A live picture of local git repositories, in the terminal.", "tarnbeck-cli");
    app.set_version_flag("--version", "tarnbeck-cli " TARNBECK_VERSION);
    app.require_subcommand(1);
    app.footer("Without a command, `status` is meant. Exit status: 0 when all was scanned, 1 when\n"
               "something could not be done, 2 for wrong usage.");

    Command<StatusArguments> status(app, "status", "Show the state of repositories");
    status->add_option("PATH", status.arguments.paths,
                       "Repositories, or folders to find them in; without, the configured ones");
    status->add_flag("--json", status.arguments.json, "Print one JSON array");
    status->add_flag("--fetch", status.arguments.fetch, "Fetch from the remotes first");
    addColor(status.app(), status.arguments.color);

    Command<WatchArguments> watch(app, "watch", "Stay and print what changes");
    watch->add_flag("--json", watch.arguments.json, "Print one JSON object a line");
    addColor(watch.app(), watch.arguments.color);

    Command<DiscoverArguments> discover(app, "discover", "Find repositories below folders");
    discover->add_option("DIR", discover.arguments.directories,
                         "Where to look; without, the configured folders");
    discover->add_flag("--json", discover.arguments.json, "Print one JSON array of paths");

    Command<AddArguments> add(app, "add", "Add repositories to the configuration");
    add->add_option("PATH", add.arguments.paths, "Repositories, or paths inside them")->required();

    Command<RemoveArguments> remove(app, "remove", "Remove repositories from the configuration");
    remove->add_option("PATH", remove.arguments.paths, "Configured repositories")->required();

    Command<ConfigArguments> config(app, "config", "Show where the files are and what is set");
    config->add_flag("--json", config.arguments.json, "Print one JSON object");

    std::ranges::reverse(words);  // the form in which the parser takes them
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitSuccess : exitUsage;
    }
    if (watch.isChosen()) return watch.arguments;
    if (discover.isChosen()) return discover.arguments;
    if (add.isChosen()) return add.arguments;
    if (remove.isChosen()) return remove.arguments;
    if (config.isChosen()) return config.arguments;
    return status.arguments;
}

}  // namespace tarnbeck::cli
