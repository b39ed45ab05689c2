#include "CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "ExitStatus.h"

namespace tarnbeck::cli {
namespace {

constexpr auto commands = std::to_array<std::string_view>(
    {"status", "watch", "issues", "deps", "install", "sync", "discover", "add", "remove", "config",
     "discard", "log", "doctor"});
constexpr std::array<std::string_view, 3> globalFlags = {"-h", "--help", "--version"};

constexpr std::string_view overview =
    "Without a command, `status` is meant: `tarnbeck-cli ~/projects` shows what is there.\n"
    "A path that is named like a command is written with its folder: `./config`.\n"
    "\n"
    "Exit status: 0 all done; 1 something could not be done, standard error says what;\n"
    "2 wrong usage.";

constexpr std::string_view legend =
    "The icon tells what matters most, those that need work come first:\n"
    "  ✎ uncommitted changes   ⬢ detached HEAD    red\n"
    "  ↑ ahead of upstream     ▲ something else   orange\n"
    "  ↓ behind upstream       ↔ diverged         yellow\n"
    "  ✓ clean                                    green\n"
    "Something else: branches besides main and master, worktrees, stashes, or git's\n"
    "configuration.";

constexpr std::string_view whatDepsShows =
    "Node projects are asked of npm or pnpm, Python projects of their own virtual environment.\n"
    "The kinds of updates:\n"
    "  major, minor, patch   can be taken; `other` too, where the versions do not tell which\n"
    "  limited               newer than the project's own constraints allow\n"
    "  blocked               another package, or Expo, does not allow it";

constexpr std::string_view whatInstallingDoes =
    "Checks the project, shows the commands that bring it up to date, asks, and runs them, with\n"
    "their output on standard error. What is limited or blocked stays as it is. Without PROJECT\n"
    "the one in the folder PATH is meant, or else the only one.";

constexpr std::string_view whatDiscardingDoes =
    "A file that the last commit does not have is deleted. Any other gets back the content\n"
    "that it has there, and what was staged of it goes too. This can't be undone.";

constexpr std::string_view whatDoctorDoes =
    "It is a report: it changes nothing, and its exit status is 0 whatever it finds. gh asks\n"
    "GitHub whether its login still holds.";

template <std::size_t count>
bool isOneOf(const std::array<std::string_view, count>& words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

// `tarnbeck-cli ~/projects` means `tarnbeck-cli status ~/projects`, and `tarnbeck-cli help add`
// means `tarnbeck-cli add --help`.
void addWhatIsMeant(std::vector<std::string>& words) {
    if (!words.empty() && words[0] == "help") {
        words.erase(words.begin());
        words.resize(words.empty() ? 0 : 1);
        words.emplace_back("--help");
    }
    const bool saysWhat =
        !words.empty() && (isOneOf(commands, words[0]) || isOneOf(globalFlags, words[0]));
    if (!saysWhat) words.insert(words.begin(), "status");
}

// The parser has its own ideas about some words ("[a,b]" and "{}" are lists, "++" ends a command),
// and about what comes behind "--". Such a word becomes another path to the same place.
std::vector<std::string> withPlainPaths(std::vector<std::string> words) {
    const auto divider = std::ranges::find(words, "--");
    const auto isSpecial = [](const std::string& word) {
        return word.starts_with('[') || word.starts_with('{') || word == "++";
    };
    for (auto word = words.begin(); word != words.end(); ++word) {
        const bool isPath = word > divider && word->starts_with('-');
        if (isPath || isSpecial(*word)) word->insert(0, "./");
    }
    if (divider != words.end()) words.erase(divider);
    return words;
}

constexpr std::array<std::pair<std::string_view, ColorChoice>, 3> colorWords = {{
    {"auto", ColorChoice::automatic},
    {"always", ColorChoice::always},
    {"never", ColorChoice::never},
}};

const ColorChoice* colorChoice(std::string_view word) {
    const auto found =
        std::ranges::find(colorWords, word, [](const auto& each) { return each.first; });
    return found == colorWords.end() ? nullptr : &found->second;
}

void addColor(CLI::App* command, ColorChoice& color) {
    command
        ->add_option(
            "--color",
            [&color](const CLI::results_t& words) {
                color = *colorChoice(words.back());
                return true;
            },
            "auto (on a terminal, unless NO_COLOR is set), always or never")
        ->check([](const std::string& word) {
            if (colorChoice(word)) return std::string();
            return "takes auto, always or never, not \"" + word + "\"";
        })
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->type_name("WHEN");
}

std::optional<std::size_t> wholeNumber(std::string_view word) {
    std::size_t number = 0;
    const char* end = word.data() + word.size();
    const auto [behind, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && behind == end ? std::optional(number) : std::nullopt;
}

void addCount(CLI::App* command, const std::string& name, std::optional<std::size_t>& count,
              const std::string& description) {
    command
        ->add_option(
            name,
            [&count](const CLI::results_t& words) {
                count = wholeNumber(words.back());
                return true;
            },
            description)
        ->check([](const std::string& word) {
            if (wholeNumber(word)) return std::string();
            return "takes a whole number, not \"" + word + "\"";
        })
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->type_name("N");
}

CLI::Option* withPathRules(CLI::Option* option) {
    return option
        ->check([](const std::string& path) {
            return path.empty() ? std::string("an empty text is no path") : std::string();
        })
        ->type_name("");
}

CLI::Option* addPaths(CLI::App* command, const std::string& name, std::vector<std::string>& paths,
                      const std::string& description) {
    return withPathRules(command->add_option(name, paths, description));
}

CLI::Option* addPath(CLI::App* command, const std::string& name, std::string& path,
                     const std::string& description) {
    return withPathRules(command->add_option(name, path, description))->required();
}

void shapeHelp(CLI::App& app) {
    const auto formatter = app.get_formatter();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Arguments");
    formatter->label("REQUIRED", "");
    formatter->column_width(20);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("tarnbeck-cli: ") + error.what() +
               "\nRun `tarnbeck-cli --help`, or a command with --help, for what it takes.\n";
    });
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", "tarnbeck-cli " TARNBECK_VERSION,
                         "Print the version and exit");
}

// One command: its words on the command line, and the arguments that come of them.
template <class CommandArguments>
class DeclaredCommand {
  public:
    DeclaredCommand(CLI::App& app, const std::string& name, const std::string& description)
        : app_(app.add_subcommand(name, description)) {
        app_->group("Commands");
    }

    CLI::App* operator->() const { return app_; }
    CLI::App* app() const { return app_; }
    CommandArguments arguments;

    bool isChosen() const { return app_->parsed(); }

  private:
    CLI::App* app_;
};

// All commands, declared to the parser.
class Grammar {
  public:
    explicit Grammar(CLI::App& app)
        : status_(app, "status", "Show the state of repositories"),
          watch_(app, "watch", "Show the configured repositories, stay, and print what changes"),
          issues_(app, "issues", "Show open issues and pull requests on GitHub"),
          deps_(app, "deps", "Show which Node and Python dependencies are behind"),
          install_(app, "install", "Bring the dependencies of one project up to date"),
          sync_(app, "sync", "Bring a branch that is behind its upstream up to date"),
          discard_(app, "discard", "Drop the uncommitted changes of one file"),
          discover_(app, "discover", "Find repositories below folders"),
          add_(app, "add", "Add repositories to the configuration"),
          remove_(app, "remove", "Remove repositories from the configuration"),
          config_(app, "config", "Show where the files are and what is set"),
          log_(app, "log", "Print the scan log"),
          doctor_(app, "doctor", "Look for what keeps things from working, and say what helps") {
        declareLooking();
        declareGitHub();
        declareDependencies();
        declareChanging();
        declareConfiguring();
        declareDiscarding();
        declareInvestigating();
    }

    Arguments chosen() const {
        if (watch_.isChosen()) return watch_.arguments;
        if (issues_.isChosen()) return issues_.arguments;
        if (deps_.isChosen()) return deps_.arguments;
        if (install_.isChosen()) return install_.arguments;
        if (sync_.isChosen()) return sync_.arguments;
        if (discard_.isChosen()) return discard_.arguments;
        if (discover_.isChosen()) return discover_.arguments;
        if (add_.isChosen()) return add_.arguments;
        if (remove_.isChosen()) return remove_.arguments;
        if (config_.isChosen()) return config_.arguments;
        if (log_.isChosen()) return log_.arguments;
        if (doctor_.isChosen()) return doctor_.arguments;
        return status_.arguments;
    }

  private:
    void declareLooking() {
        addPaths(status_.app(), "PATH", status_.arguments.paths,
                 "Repositories, or folders to find them in; without, the configured ones");
        status_->add_flag("--json", status_.arguments.json, "Print one JSON array");
        status_->add_flag("--fetch", status_.arguments.fetch, "Fetch from the remotes first");
        addColor(status_.app(), status_.arguments.color);
        status_->footer(std::string(legend));
        watch_->add_flag("--json", watch_.arguments.json, "Print one JSON object a line");
        addColor(watch_.app(), watch_.arguments.color);
    }

    void declareGitHub() {
        addPaths(issues_.app(), "PATH", issues_.arguments.paths,
                 "Repositories, or folders to find them in; without, the configured ones");
        issues_->add_flag("--json", issues_.arguments.json, "Print one JSON array");
        issues_->add_flag("--refresh", issues_.arguments.refresh,
                          "Ask GitHub even when the last answer is younger than 15 minutes");
        addColor(issues_.app(), issues_.arguments.color);
    }

    void declareDependencies() {
        addPaths(deps_.app(), "PATH", deps_.arguments.paths,
                 "Repositories, or folders to find them in; without, the configured ones");
        deps_->add_flag("--json", deps_.arguments.json, "Print one JSON array");
        deps_->add_flag("--refresh", deps_.arguments.refresh,
                        "Check even when nothing has changed and the last check is younger than an "
                        "hour");
        addColor(deps_.app(), deps_.arguments.color);
        deps_->footer(std::string(whatDepsShows));
        addPath(install_.app(), "PATH", install_.arguments.path,
                "A repository, or a path inside one");
        withPathRules(install_->add_option("PROJECT", install_.arguments.project,
                                           "The project, as `deps` shows it: . or web"));
        install_->add_flag("-y,--yes", install_.arguments.yes, "Do not ask");
        install_->footer(std::string(whatInstallingDoes));
    }

    void declareChanging() {
        sync_->add_option("PATH", sync_.arguments.path, "A repository, or a path inside it")
            ->required()
            ->type_name("");
        sync_->footer(
            "Fetches, and moves the branch forward where that needs no merge. A repository with\n"
            "uncommitted changes, a detached HEAD or a branch of its own is left alone.");
    }

    void declareConfiguring() {
        addPaths(discover_.app(), "DIR", discover_.arguments.directories,
                 "Where to look; without, the configured folders");
        discover_->add_flag("--json", discover_.arguments.json, "Print one JSON array of paths");
        addPaths(add_.app(), "PATH", add_.arguments.paths, "Repositories, or paths inside them")
            ->required();
        addPaths(remove_.app(), "PATH", remove_.arguments.paths, "Configured repositories")
            ->required();
        config_->add_flag("--json", config_.arguments.json, "Print one JSON object");
    }

    void declareDiscarding() {
        addPath(discard_.app(), "PATH", discard_.arguments.path,
                "A repository or worktree, or a path inside one");
        addPath(discard_.app(), "FILE", discard_.arguments.file,
                "The file, as git prints it or as a path");
        discard_->add_flag("-y,--yes", discard_.arguments.yes, "Do not ask");
        discard_->footer(std::string(whatDiscardingDoes));
    }

    void declareInvestigating() {
        log_->add_flag("-f,--follow", log_.arguments.follow, "Stay, and print what comes");
        addCount(log_.app(), "-n,--lines", log_.arguments.lines,
                 "Only the last N lines (10 with --follow)");
        doctor_->add_flag("--json", doctor_.arguments.json, "Print one JSON array of findings");
        doctor_->footer(std::string(whatDoctorDoes));
    }

    DeclaredCommand<StatusArguments> status_;
    DeclaredCommand<WatchArguments> watch_;
    DeclaredCommand<IssuesArguments> issues_;
    DeclaredCommand<DepsArguments> deps_;
    DeclaredCommand<InstallArguments> install_;
    DeclaredCommand<SyncArguments> sync_;
    DeclaredCommand<DiscardArguments> discard_;
    DeclaredCommand<DiscoverArguments> discover_;
    DeclaredCommand<AddArguments> add_;
    DeclaredCommand<RemoveArguments> remove_;
    DeclaredCommand<ConfigArguments> config_;
    DeclaredCommand<LogArguments> log_;
    DeclaredCommand<DoctorArguments> doctor_;
};

}  // namespace

std::variant<Arguments, int> parsedCommandLine(std::vector<std::string> words) {
    addWhatIsMeant(words);
    CLI::App app("A live picture of local git repositories, in the terminal.", "tarnbeck-cli");
    shapeHelp(app);
    app.require_subcommand(0, 1);
    Grammar grammar(app);  // the parser writes into it
    app.footer(std::string(overview));

    words = withPlainPaths(std::move(words));
    std::ranges::reverse(words);  // the form in which the parser takes them
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitSuccess : exitUsage;
    }
    return grammar.chosen();
}

}  // namespace tarnbeck::cli
