#include "DoctorFindings.h"

#include <algorithm>
#include <bit>
#include <cctype>

#include <fmt/format.h>

#include "DependencyCommandRunner.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

// The findings of one section, in order.
class Section {
  public:
    Section(std::string title, std::vector<Finding>& findings)
        : title_(std::move(title)), findings_(findings) {}

    void ok(std::string finding) { findings_.push_back({title_, true, std::move(finding)}); }
    void advise(std::string finding, std::string advice) {
        findings_.push_back({title_, false, std::move(finding), std::move(advice)});
    }

  private:
    const std::string title_;
    std::vector<Finding>& findings_;
};

std::string purposeOf(const std::string& tool) {
    if (tool == "gh") return "issues, pull requests and runners";
    if (tool == "uv") return "Python environments without pip";
    if (tool == "python3") return "making the environments of Python projects";
    if (tool == "npx") return "the dependencies of Expo projects";
    return fmt::format("the dependencies of {} projects", tool);
}

// What has to be done so that a tool at another place is found.
std::string adviceForElsewhere(const ToolFacts& tool) {
    if (tool.name == "git") return "Install git where it is looked for: at /usr/bin/git.";
    if (tool.name == "gh") {
        return fmt::format("Link it where it is looked for: sudo ln -s {} /usr/local/bin/gh",
                           *tool.elsewhere);
    }
    if (tool.name == "uv") return "Link it into ~/.local/bin or /usr/local/bin.";
    const bool needsNode = tool.name == "npm" || tool.name == "npx" || tool.name == "pnpm";
    return fmt::format("Link it{} into /usr/local/bin; only {} is searched.",
                       needsNode ? ", and node with it," : "", DependencyCommandRunner::searchPath);
}

void addTool(Section& section, const ToolFacts& tool) {
    if (tool.path && tool.version) {
        section.ok(fmt::format("{} {} at {}", tool.name, *tool.version, *tool.path));
    } else if (tool.path) {
        section.advise(
            fmt::format("{} at {} does not work: {}", tool.name, *tool.path, tool.trouble),
            fmt::format("Run `{} --version` to see why.", *tool.path));
    } else if (tool.elsewhere) {
        section.advise(fmt::format("{} is not seen at {}", tool.name, *tool.elsewhere),
                       adviceForElsewhere(tool));
    } else if (tool.name == "git") {
        section.advise("git is not at /usr/bin/git", "Install git: nothing works without it.");
    } else {
        section.ok(
            fmt::format("{} is not there (only needed for {})", tool.name, purposeOf(tool.name)));
    }
}

// Older versions of gh always keep the token in the file, and do not know the flag.
constexpr std::string_view loginIntoFile =
    "`gh auth login --insecure-storage` (before gh 2.26 without the flag)";

std::string adviceForLogin(const LoginFacts& login) {
    if (!login.tokenVariables.empty()) {
        return fmt::format("{} is not passed on to gh: unset it, and run {}.",
                           login.tokenVariables.front(), loginIntoFile);
    }
    if (login.holdsForUser && !login.tokenIsInFile) {
        return fmt::format("Your login is in a keyring that gh does not reach from here: run {}.",
                           loginIntoFile);
    }
    if (login.holdsForUser) {
        return "It works in your own environment: compare with `env -i HOME=\"$HOME\" gh auth "
               "status`.";
    }
    return fmt::format("For issues, pull requests and runners, run {}.", loginIntoFile);
}

void addLogin(Section& section, const LoginFacts& login) {
    switch (login.state) {
        case LoginFacts::State::notAsked:
            section.ok("gh is not there to be asked");
            return;
        case LoginFacts::State::holds:
            section.ok("gh is logged in");
            return;
        case LoginFacts::State::tookTooLong:
            section.advise("gh did not say in time whether it is logged in",
                           "Look whether the network is there: `gh auth status`.");
            return;
        case LoginFacts::State::fails:
            break;
    }
    section.advise("gh is not logged in: " + login.words, adviceForLogin(login));
}

void addEnvironment(Section& section, const EnvironmentFacts& environment) {
    if (environment.hasSshAgent) {
        section.advise("git does not see your ssh agent (SSH_AUTH_SOCK)",
                       "For remotes over ssh, name the agent's socket as IdentityAgent in "
                       "~/.ssh/config.");
    } else {
        section.ok("there is no ssh agent that git would not see");
    }
    if (environment.proxyVariables.empty()) {
        section.ok("there is no proxy that the tools would not see");
        return;
    }
    section.advise(
        fmt::format("the tools do not see your proxy ({})",
                    joined(environment.proxyVariables, ", ")),
        "For git: `git config --global http.proxy URL`; for npm: `npm config set proxy URL`.");
}

// The next power of two, which is how such limits are set.
std::uint64_t sufficientLimit(const WatchCapacity& capacity, std::int64_t needed) {
    const std::int64_t wanted = (capacity.used + needed) / 9 * 10 + 1;
    return std::bit_ceil(static_cast<std::uint64_t>(std::max(wanted, capacity.limit + 1)));
}

void addWatching(Section& section, const WatchFacts& watching) {
    if (!watching.capacity) {
        section.ok("this system has no limit");
        return;
    }
    const WatchCapacity& capacity = *watching.capacity;
    const std::int64_t left = std::max<std::int64_t>(capacity.limit - capacity.used, 0);
    std::string finding =
        fmt::format("{} of {} watches are left; the configured repositories need about {}", left,
                    capacity.limit, watching.needed);
    if (left >= watching.needed && left >= capacity.limit / 10) {
        section.ok(std::move(finding));
    } else {
        section.advise(std::move(finding),
                       fmt::format("Raise the limit: sudo sysctl fs.inotify.max_user_watches={} "
                                   "(in /etc/sysctl.d/ it stays).",
                                   sufficientLimit(capacity, watching.needed)));
    }
}

// True when the path is as it should be.
bool addRepository(Section& section, const ConfiguredPathFacts& repository) {
    const std::string& path = repository.path;
    const auto removal = fmt::format("`tarnbeck-cli remove {}` takes it off the list.", path);
    if (!repository.exists) {
        section.advise(path + " does not exist", removal);
    } else if (!repository.isRepository) {
        section.advise(path + " is no repository", removal);
    } else if (repository.excludedName) {
        section.advise(fmt::format("{} lies below \"{}\"", path, *repository.excludedName),
                       "Nothing is watched below such a name: its changes are seen by the "
                       "periodic scan only.");
    } else {
        return true;
    }
    return false;
}

void addNoRepository(Section& section, const std::vector<ConfiguredPathFacts>& scanDirectories) {
    if (std::ranges::any_of(scanDirectories, &ConfiguredPathFacts::exists)) {
        section.ok("none is configured yet; the first start looks for some");
    } else {
        section.advise("none is configured, and no folder is there to look for some in",
                       "Add one: `tarnbeck-cli add PATH`.");
    }
}

void addRepositories(Section& section, const std::vector<ConfiguredPathFacts>& repositories) {
    const auto good = std::ranges::count_if(
        repositories, [&](const auto& each) { return addRepository(section, each); });
    if (good > 0) {
        section.ok(fmt::format("{} of {} are there and watched", good, repositories.size()));
    }
}

void addFiles(Section& section, const FileFacts& files) {
    if (files.configurationTrouble) {
        section.advise(
            fmt::format("{} can't be read: {}", files.configuration, *files.configurationTrouble),
            "Mend it or delete it; until then the defaults hold.");
    } else if (files.configurationExists) {
        section.ok(files.configuration + " can be read");
    } else {
        section.ok(files.configuration + " is not there yet; the defaults hold");
    }
    if (files.brokenConfiguration) {
        section.advise("an earlier configuration that could not be read is kept as " +
                           *files.brokenConfiguration,
                       "Take over from it what you miss, and delete it.");
    }
    const auto addWritable = [&](const std::string& path, const auto& trouble) {
        if (trouble) {
            section.advise(fmt::format("{} can't be written: {}", path, *trouble),
                           "See to whom it belongs: `ls -ld` with this path.");
        } else {
            section.ok(path + " can be written");
        }
    };
    addWritable(files.folder, files.folderTrouble);
    addWritable(files.log, files.logTrouble);
}

}  // namespace

std::vector<Finding> findingsOf(const DoctorFacts& facts) {
    std::vector<Finding> findings;
    Section tools("Tools", findings);
    for (const ToolFacts& tool : facts.tools) addTool(tools, tool);
    Section gitHub("GitHub", findings);
    addLogin(gitHub, facts.login);
    Section environment("Environment", findings);
    addEnvironment(environment, facts.environment);
    Section watching("Watching", findings);
    addWatching(watching, facts.watching);
    Section repositories("Repositories", findings);
    if (facts.repositories.empty()) {
        addNoRepository(repositories, facts.scanDirectories);
    } else {
        addRepositories(repositories, facts.repositories);
    }
    Section files("Files", findings);
    addFiles(files, facts.files);
    return findings;
}

std::string doctorText(const std::vector<Finding>& findings) {
    std::string text;
    const std::string* section = nullptr;
    for (const Finding& each : findings) {
        if (!section || *section != each.section) {
            text += fmt::format("{}{}\n", section ? "\n" : "", each.section);
        }
        section = &each.section;
        text += fmt::format("  {} {}\n", each.isOk ? "✓" : "!", printable(each.finding));
        if (each.advice) text += fmt::format("    {}\n", printable(*each.advice));
    }
    const auto open = std::ranges::count(findings, false, &Finding::isOk);
    if (open == 0) return text + "\nNothing needs to be done.\n";
    return text + fmt::format("\n{} with advice.\n",
                              open == 1 ? "1 finding" : fmt::format("{} findings", open));
}

std::string versionIn(std::string_view output) {
    const std::string_view line = output.substr(0, output.find('\n'));
    std::string version;
    forEachPiece(line, ' ', [&](std::string_view piece) {
        const bool isNumber = std::isdigit(static_cast<unsigned char>(piece[0])) != 0;
        if (version.empty() && isNumber) version = piece;
    });
    return version.empty() ? std::string(line) : version;
}

}  // namespace tarnbeck::cli
