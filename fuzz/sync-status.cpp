#include "Fuzzing.h"
#include "GitOutputParsers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tarnbeck::GitSyncStatus;
    const GitSyncStatus status = tarnbeck::GitOutputParsers::parseSyncStatus(textOf(data, size));
    promise(status.is<GitSyncStatus::Unknown>() == (size == 0));
    const auto* diverged = std::get_if<GitSyncStatus::Diverged>(&status.value);
    promise(!diverged || (diverged->ahead > 0 && diverged->behind > 0));
    promise(!status.badgeValue().empty());
    return 0;
}
