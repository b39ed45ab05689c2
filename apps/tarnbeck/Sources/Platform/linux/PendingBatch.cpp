#include "PendingBatch.h"

#include <algorithm>

#include <boost/container_hash/hash.hpp>

#include "Paths.h"

namespace tarnbeck {

std::size_t PendingBatch::Hash::operator()(const EntryView& entry) const {
    std::size_t seed = std::hash<std::string_view>()(entry.second);
    boost::hash_combine(seed, entry.first);
    return seed;
}

void PendingBatch::add(WatchTree::Folder folder, std::string_view name) {
    if (eventsWereLost_ || entries_.contains(EntryView(folder, name))) return;
    if (pruned_.isExcluded(name)) {
        if (excludedEntries_ == mostPaths) return;
        ++excludedEntries_;
    }
    insert(folder, name);
    if (entries_.size() - excludedEntries_ > mostPaths) noteLoss();
}

void PendingBatch::insert(WatchTree::Folder folder, std::string_view name) {
    entries_.emplace(folder, std::string(name));
    tree_.hold(folder);
}

void PendingBatch::addPath(const std::string& path) {
    if (!eventsWereLost_) paths_.push_back(path);
}

void PendingBatch::noteLoss() {
    clear();
    eventsWereLost_ = true;
}

void PendingBatch::clear() {
    for (const Entry& entry : entries_) tree_.release(entry.first);
    entries_.clear();
    excludedEntries_ = 0;
    paths_.clear();
}

void PendingBatch::settle() {
    for (const Entry& entry : entries_) {
        const auto paths = tree_.paths(entry.first, entry.second);
        paths_.insert(paths_.end(), paths.begin(), paths.end());
        tree_.release(entry.first);
    }
    entries_.clear();
    excludedEntries_ = 0;
}

FileEventBatch PendingBatch::take() {
    settle();
    std::sort(paths_.begin(), paths_.end());
    paths_.erase(std::unique(paths_.begin(), paths_.end()), paths_.end());
    const auto matters = std::count_if(paths_.begin(), paths_.end(), [this](const auto& path) {
        return !pruned_.isExcluded(lastPathComponent(path));
    });
    if (static_cast<std::size_t>(matters) > mostPaths) noteLoss();
    FileEventBatch batch{.paths = std::move(paths_), .eventsWereLost = eventsWereLost_};
    paths_ = {};
    eventsWereLost_ = false;
    return batch;
}

}  // namespace tarnbeck
