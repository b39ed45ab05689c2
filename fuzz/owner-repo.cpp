#include <algorithm>

#include "Fuzzing.h"
#include "GitHubScanner.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto ownerRepo = tarnbeck::GitHubScanner::parseOwnerRepo(textOf(data, size));
    if (!ownerRepo) return 0;
    promise(std::ranges::count(*ownerRepo, '/') == 1);
    promise(!ownerRepo->starts_with('/') && !ownerRepo->ends_with('/'));
    return 0;
}
