#include "FolderRenames.h"

#include <algorithm>

namespace tarnbeck {

void FolderRenames::left(std::uint32_t cookie, int watch, std::string_view name) {
    renames_.push_back({.cookie = cookie, .fromWatch = watch, .fromName = std::string(name)});
}

bool FolderRenames::arrived(std::uint32_t cookie, int watch, std::string_view name) {
    const auto found = std::find_if(renames_.rbegin(), renames_.rend(),
                                    [&](const auto& each) { return each.cookie == cookie; });
    if (found == renames_.rend()) return false;
    found->toWatch = watch;
    found->toName = name;
    return true;
}

const FolderRename* FolderRenames::from(int watch, std::string_view name) const {
    return latest(
        [&](const auto& each) { return each.fromWatch == watch && each.fromName == name; });
}

const FolderRename* FolderRenames::to(int watch, std::string_view name) const {
    return latest([&](const auto& each) { return each.toWatch == watch && each.toName == name; });
}

void FolderRenames::erase(const FolderRename* rename) {
    renames_.erase(renames_.begin() + (rename - renames_.data()));
}

std::vector<FolderRename> FolderRenames::takeUntold() {
    std::erase_if(renames_, [](const FolderRename& each) { return each.isOld; });
    std::vector<FolderRename> arrivals;
    for (FolderRename& each : renames_) {
        each.isOld = true;
        if (each.toWatch >= 0) arrivals.push_back(each);
    }
    return arrivals;
}

}  // namespace tarnbeck
