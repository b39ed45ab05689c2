#include "Fuzzing.h"
#include "RepositoryScanner.h"
#include "Text.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = textOf(data, size);
    for (const auto& ownerRepo : tarnbeck::RepositoryScanner::gitHubOwnerRepos(text)) {
        promise(ownerRepo.find('/') != std::string::npos);
        promise(tarnbeck::lowercased(ownerRepo) == ownerRepo);
    }
    return 0;
}
