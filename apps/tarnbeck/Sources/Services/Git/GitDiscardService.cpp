#include "GitDiscardService.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>

#include "FileSystem.h"
#include "GitPaths.h"
#include "ProcessPipeReader.h"
#include "Text.h"

namespace tarnbeck {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// Words for the user; absent where all is well.
using Words = std::optional<std::string>;

enum class Kind { absent, folder, other };

// Of what stands at the path itself: a link to a folder is no folder.
Kind kindOf(const std::string& path) {
    struct stat information {};
    if (lstat(path.c_str(), &information) != 0) return Kind::absent;
    return S_ISDIR(information.st_mode) ? Kind::folder : Kind::other;
}

// A relative path that stays below where it starts, and leads to one thing by one way only. The
// end of a text for a child is its first NUL: what stands before it is another name.
bool isPlainPath(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) return false;
    while (true) {
        const std::size_t slash = path.find('/');
        const std::string_view component = path.substr(0, slash);
        if (component.empty() || component == "." || component == "..") return false;
        if (slash == std::string_view::npos) return true;
        path.remove_prefix(slash + 1);
    }
}

// What git tells of a file in a commit or in the index: "100644 … <tab>name".
struct Entry {
    std::string_view mode;
    std::string_view name;

    bool isSubmodule() const { return mode == "160000"; }
};

std::vector<Entry> entriesIn(std::string_view listing) {
    std::vector<Entry> entries;
    forEachPiece(listing, '\0', [&](std::string_view line) {
        const std::size_t tab = std::min(line.find('\t'), line.size());
        entries.push_back(
            {line.substr(0, line.find(' ')), line.substr(std::min(tab + 1, line.size()))});
    });
    return entries;
}

bool tellsOfRemoval(std::string_view output) {
    bool removed = false;
    forEachLine(output, [&](std::string_view line) { removed |= line.starts_with("Removing "); });
    return removed;
}

// A question is answered by all of its output or not at all; of an action the exit status tells.
enum class CommandKind { question, action };

struct Tools {
    const std::string& executable;
    const ImmutableList<std::string>& environment;
    ProcessLauncher& launcher;
    const GitDiscardService::Logger& logger;
};

// The git of one discard: every failure becomes words for the user and a line for the logger.
class OutspokenGit {
  public:
    OutspokenGit(const Tools& tools, const DiscardRequest& request)
        : tools_(tools), request_(request) {}

    // Standard output. Waits for the end of git however long it takes.
    Result<std::string> run(CommandKind kind, const std::vector<std::string_view>& command) const {
        std::vector<std::string> arguments = {"-C", request_.repoPath};
        arguments.insert(arguments.end(), command.begin(), command.end());
        auto launched = tools_.launcher.launch({.executable = tools_.executable,
                                                .arguments = arguments,
                                                .environment = tools_.environment});
        if (!launched) {
            const std::string words = "Could not run git discard command: " + launched.error();
            return Failure{logged("Discard failed to start for", words)};
        }
        ChildProcess& child = **launched;
        auto reader = ProcessPipeReader::readStdoutAndStderr(child.takeStandardOutput(),
                                                             child.takeStandardError());
        reader.waitForExit(child, steady_clock::time_point::max());
        const bool isWhole = reader.waitForEnd(steady_clock::now() + 2s);
        const int status = child.terminationStatus();
        if (status != 0) return Failure{wordsOfFailure(status, reader.takeStandardError())};
        if (kind == CommandKind::question && !isWhole) {
            return Failure{refusal("is left alone, because an answer of git did not end")};
        }
        return reader.takeStandardOutput();
    }

    // Why git is not let loose on the file.
    std::string refusal(std::string_view reason) const {
        return logged("Discard failed for", fmt::format("{} {}", request_.filePath, reason));
    }

  private:
    std::string wordsOfFailure(int status, const std::string& errors) const {
        std::string words(trimmingWhitespaceAndNewlines(decodedUtf8(errors)));
        if (words.empty()) {
            words = fmt::format("git discard command failed with exit code {}", status);
        }
        return logged("Discard failed for", std::move(words));
    }

    std::string logged(std::string_view what, std::string words) const {
        tools_.logger(fmt::format("{} {}: {}", what, request_.filePath, words));
        return words;
    }

    const Tools tools_;
    const DiscardRequest& request_;
};

// One discard: its git commands and the looks at the file system between them.
class Discard {
  public:
    Discard(const Tools& tools, const DiscardRequest& request)
        : git_(tools, request),
          request_(request),
          name_(GitPaths::unquoted(request.filePath)),
          specification_(GitPaths::specificationOf(name_)),
          meansFolder_(name_.ends_with('/')) {
        if (meansFolder_) name_.pop_back();
        path_ = request.repoPath + "/" + name_;
    }

    Words run() const {
        if (!isPlainPath(name_)) return refusal("is not the path of a file in the work tree");
        if (!stillLiesInFolders()) return refusal("lies behind what is no folder any more");
        return request_.status == "??" ? deleteUntracked() : restoreTracked();
    }

  private:
    Words deleteUntracked() const {
        const Kind kind = kindOf(path_);
        if (kind == Kind::absent) return fmt::format("{} is no longer there", request_.filePath);
        if (kind == Kind::folder && !meansFolder_) return refusal("has become a folder");
        const auto reached = ask({"ls-files", "-z", "--full-name", "--others"});
        if (!reached) return reached.error();
        if (!holdsOnlyThis(*reached)) return refusalOfAnotherFile();
        const auto removed = act({"clean", "-f", "-d"});
        if (!removed) return removed.error();
        if (kindOf(path_) == Kind::absent || tellsOfRemoval(*removed)) return std::nullopt;
        return fmt::format("git deleted nothing, because {} is {}", request_.filePath,
                           exists(path_ + "/.git") ? "a repository of its own"
                                                   : "ignored, or no longer untracked");
    }

    Words restoreTracked() const {
        const auto inCommit = ask({"ls-tree", "-r", "-z", "--full-name", "HEAD"});
        if (!inCommit) return inCommit.error();
        const auto inIndex = ask({"ls-files", "-s", "-z", "--full-name"});
        if (!inIndex) return inIndex.error();
        const std::vector<Entry> committed = entriesIn(*inCommit);
        const std::vector<Entry> staged = entriesIn(*inIndex);
        if (!areOnlyThis(committed) || !areOnlyThis(staged)) return refusalOfAnotherFile();
        if (kindOf(path_) == Kind::folder) {
            if (auto obstacle = obstacleOfFolder(committed, staged)) return obstacle;
        }
        return restoreLookingBothTimes(hasSubmodule(committed) || hasSubmodule(staged));
    }

    Words restoreLookingBothTimes(bool isSubmodule) const {
        const auto before = changes();
        if (!before) return before.error();
        if (before->empty()) return fmt::format("{} has no changes any more", request_.filePath);
        const auto restored = act({"restore", "--source=HEAD", "--staged", "--worktree"});
        if (!restored) return restored.error();
        const auto after = changes();
        if (!after) return after.error();
        if (*after != *before) return std::nullopt;
        return fmt::format("git changed nothing, because {} {}", request_.filePath,
                           isSubmodule ? "is a submodule, and the changes are inside it"
                                       : "differs again as soon as it is restored");
    }

    // git would delete a folder with all that is in it to make room for a file; and with
    // `submodule.recurse` it would throw away the work inside a submodule.
    Words obstacleOfFolder(const std::vector<Entry>& committed,
                           const std::vector<Entry>& staged) const {
        if (!committed.empty() && !hasSubmodule(committed)) return refusal("has become a folder");
        if (!hasSubmodule(committed) && !hasSubmodule(staged)) return std::nullopt;
        const auto recurses =
            git_.run(CommandKind::question,
                     {"config", "--type=bool", "--default=false", "--get", "submodule.recurse"});
        if (!recurses) return recurses.error();
        if (trimmingNewlines(*recurses) == "false") return std::nullopt;
        return refusal(
            "is a submodule, and by `submodule.recurse` the work inside it would go too");
    }

    bool stillLiesInFolders() const {
        for (std::size_t slash = name_.find('/'); slash != std::string::npos;
             slash = name_.find('/', slash + 1)) {
            const std::string above = request_.repoPath + "/" + name_.substr(0, slash);
            if (kindOf(above) == Kind::other) return false;
        }
        return true;
    }

    bool areOnlyThis(const std::vector<Entry>& entries) const {
        return std::ranges::all_of(entries,
                                   [this](const Entry& entry) { return entry.name == name_; });
    }
    static bool hasSubmodule(const std::vector<Entry>& entries) {
        return std::ranges::any_of(entries, &Entry::isSubmodule);
    }

    bool holdsOnlyThis(std::string_view names) const {
        const std::string folder = name_ + "/";
        bool holds = true;
        forEachPiece(names, '\0', [&](std::string_view name) {
            holds &= meansFolder_ ? name.starts_with(folder) : name == name_;
        });
        return holds;
    }

    Result<std::string> changes() const { return ask({"status", "--porcelain", "-z", "-uall"}); }

    using Command = std::initializer_list<std::string_view>;
    Result<std::string> ask(Command command) const { return git(CommandKind::question, command); }
    Result<std::string> act(Command command) const { return git(CommandKind::action, command); }

    // A command on the file.
    Result<std::string> git(CommandKind kind, Command command) const {
        std::vector<std::string_view> words(command);
        words.insert(words.end(), {"--", specification_});
        return git_.run(kind, words);
    }

    std::string refusal(std::string_view reason) const { return git_.refusal(reason); }
    std::string refusalOfAnotherFile() const {
        return refusal("can't be discarded alone, because git means other files by it too");
    }

    const OutspokenGit git_;
    const DiscardRequest& request_;
    std::string name_;  // without a slash at its end
    const std::string specification_;
    const bool meansFolder_;
    std::string path_;  // absolute
};

}  // namespace

GitDiscardService::GitDiscardService(Options options, ProcessLauncher& launcher, Logger logger)
    : options_(std::move(options)),
      environment_{"HOME=" + options_.home, "GIT_TERMINAL_PROMPT=0",
                   "PATH=/usr/bin:/bin:/usr/sbin:/sbin:/usr/local/bin:/opt/homebrew/bin",
                   "LC_ALL=C"},
      launcher_(launcher),
      logger_(std::move(logger)) {}

Words GitDiscardService::discardFileChange(const DiscardRequest& request) const {
    return Discard({options_.executable, environment_, launcher_, logger_}, request).run();
}

}  // namespace tarnbeck
