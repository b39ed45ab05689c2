// A folder whose events are observed, and the marks by which a test knows that all which happened
// before has been told.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ObservedEvents.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

class WatchedRoot : public ::testing::Test {
  protected:
    void watch(const ObservedEvents::Excludes& excludes = {}) {
        ASSERT_EQ(events_.open({root_}, excludes), std::nullopt);
    }
    // Until all that happened so far has been told. A mark may itself be lost in a storm; the next
    // one is told then.
    void waitUntilTold() {
        for (std::string mark; !events_.wasTold(mark);) {
            const std::size_t losses = events_.losses();
            mark = folder_.write("root/mark" + std::to_string(marks_++), "");
            ASSERT_TRUE(events_.waitForOrLoss(mark, losses));
        }
    }
    // Lets nothing of what was told so far count.
    void startAfresh() {
        waitUntilTold();
        events_.forget();
    }
    // What was told since, without the marks.
    std::set<std::string> told() {
        std::set<std::string> paths = events_.paths();
        std::erase_if(paths, [this](const auto& path) { return path.starts_with(at("mark")); });
        return paths;
    }
    std::string at(const std::string& name) const { return root_ + "/" + name; }
    std::string makeFolder(const std::string& name) { return folder_.makeFolder("root/" + name); }
    std::string write(const std::string& name, const std::string& content = "text") {
        return folder_.write("root/" + name, content);
    }

    TemporaryFolder folder_;
    std::string root_ = folder_.makeFolder("root");
    ObservedEvents events_;
    int marks_ = 0;
};

// The watches that this process holds.
inline std::size_t ownWatches() {
    std::size_t count = 0;
    for (const auto& each : std::filesystem::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream lines(each.path());
        for (std::string line; std::getline(lines, line);) count += line.starts_with("inotify wd:");
    }
    return count;
}

inline std::ptrdiff_t ownThreads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

}  // namespace tarnbeck::testing
