// Repositories to measure with, and what an engine in earnest consists of.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "GitCommand.h"
#include "GitHubScanner.h"
#include "NameCollator.h"
#include "Paths.h"
#include "PosixMainLoop.h"
#include "PosixProcessLauncher.h"
#include "RepositoryScanner.h"
#include "ScanLog.h"
#include "SystemFileEvents.h"
#include "ThreadedWorkQueues.h"

namespace tarnbeck::benchmark {

// A folder that goes with this. It lies in the home, since "tmp" is a name below which nothing is
// watched.
class Folder {
  public:
    Folder() {
        std::string pattern = userHome() + "/tarnbeck-bench-XXXXXX";
        path_ = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// `count` repositories below `folder`, clean and dirty ones, with branches, tags, stashes, linked
// worktrees and remotes; no scan of one pauses for a retry.
inline std::vector<std::string> makeMixedRepositories(const std::string& folder, int count) {
    const std::string script = "set -e; cd '" + folder + "'; export HOME='" + folder + "'\n" + R"(
git config --global user.name A; git config --global user.email a@example.com
git config --global init.defaultBranch main; git config --global gc.auto 0
for i in $(seq )" + std::to_string(count) +
                               R"(); do
  git init -q repo$i; cd repo$i
  for f in $(seq $((i % 40 + 1))); do echo $f > file$f; done
  git add . ; git commit -q -m first
  git remote add origin "https://github.com/owner/repo$i.git"
  for b in $(seq $((i % 7))); do git branch topic/$b; done
  for t in $(seq $((i % 11))); do git tag v$t; done
  if [ $((i % 3)) = 0 ]; then echo change > file1; echo new > 'new file'; fi
  if [ $((i % 5)) = 0 ]; then echo stashed > file1; git stash -q; fi
  if [ $((i % 10)) = 0 ]; then git worktree add -q ../tree$i -b tree; fi
  cd ..
done)";
    if (std::system(script.c_str()) != 0) std::abort();
    std::vector<std::string> paths;
    for (int index = 1; index <= count; ++index) {
        paths.push_back(folder + "/repo" + std::to_string(index));
    }
    return paths;
}

struct Engine {
    explicit Engine(std::string userHome) : home(std::move(userHome)) {}
    ~Engine() { queues.waitUntilIdle(); }

    RepositoryScanner::Services services() {
        return {.loop = loop,
                .queues = queues,
                .log = log,
                .collator = collator,
                .git = [this](const GitInvocation& invocation) { return runGit(invocation); },
                .home = home,
                .fileEvents = fileEvents.get()};
    }

    // Real scans of these repositories, not started by themselves.
    RepositoryScanner::Options options(AppConfiguration configuration) {
        const RepositoryScanner::Sources sources{
            .gitHub = gitHub,
            .dependencyTools = dependencyTools,
            .dependencyMemory = {.cache = dependencyCache, .clock = loop}};
        auto made = RepositoryScanner::ordinaryOptions(
            services(), sources, {.home = home, .report = [](std::string_view) {}},
            std::move(configuration));
        made.autoStart = false;
        return made;
    }

    // Told of each command that the scanner has run, and how long it took. Any thread.
    std::function<void(const GitInvocation&, std::chrono::nanoseconds)> observeGit;

    std::string home;
    PosixMainLoop loop;
    PosixProcessLauncher launcher;
    ThreadedWorkQueues queues;
    ScanLog log{{.home = home}, loop, queues};
    GitCommand git{{.home = home}, launcher, log};
    GitHubScanner gitHub{
        {.home = home},
        {.launcher = launcher,
         .git = [this](const GitInvocation& invocation) { return git.run(invocation); },
         .log = log,
         .clock = loop,
         .queues = queues}};
    DependencyTools dependencyTools = DependencyTools::ordinary(home, launcher);
    DependencyCache dependencyCache{DependencyCache::ordinaryFile(home),
                                    {.loop = loop, .queues = queues}};
    std::unique_ptr<FileEvents> fileEvents = makeFileEvents();
    NameCollator collator;

  private:
    std::optional<std::string> runGit(const GitInvocation& invocation) {
        if (!observeGit) return git.run(invocation);
        const auto start = std::chrono::steady_clock::now();
        auto output = git.run(invocation);
        observeGit(invocation, std::chrono::steady_clock::now() - start);
        return output;
    }
};

}  // namespace tarnbeck::benchmark
