#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto worktrees = tarnbeck::GitOutputParsers::parseWorktrees(textOf(data, size));
    for (const auto& worktree : worktrees) {
        promise(worktree.isMainWorktree == (&worktree == &worktrees.front()));
        promise(worktree.path.find('\n') == std::string::npos);
    }
    return 0;
}
