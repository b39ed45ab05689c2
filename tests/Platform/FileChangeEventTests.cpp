#include <filesystem>
#include <fstream>

#include <poll.h>

#include "FileChangeEvent.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;

class FileChangeEventTest : public ::testing::Test {
  protected:
    FileChangeEventTest() : event_(*FileChangeEvent::open(path_)) {}

    // Whether an event has come; they come with the change itself on this machine.
    bool tells() const {
        pollfd descriptor{event_->descriptor(), POLLIN, 0};
        return poll(&descriptor, 1, 0) == 1;
    }
    // The same, for what may take its time.
    bool tellsSoon() const {
        pollfd descriptor{event_->descriptor(), POLLIN, 0};
        return poll(&descriptor, 1, 10'000) == 1;
    }
    void append(const std::string& path) { std::ofstream(path, std::ios::app) << "line\n"; }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_.makeFolder("logs") + "/file.log";
    std::unique_ptr<FileChangeEvent> event_;
};

TEST_F(FileChangeEventTest, TellsThatTheFileWasMade) {
    EXPECT_TRUE(event_->rearm());
    append(path_);
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, TellsThatItGrew) {
    append(path_);
    EXPECT_TRUE(event_->rearm());
    append(path_);
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, TellsThatAnotherTookItsPlace) {
    append(path_);
    append(path_ + ".new");
    EXPECT_TRUE(event_->rearm());
    fs::rename(path_ + ".new", path_);
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, TellsThatTheOneThatTookItsPlaceGrew) {
    append(path_);
    append(path_ + ".new");
    fs::rename(path_ + ".new", path_);
    EXPECT_TRUE(event_->rearm());
    append(path_);
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, TellsThatTheFileGrewToWhichALinkLeads) {
    append(folder_ / "elsewhere.log");
    fs::create_symlink(folder_ / "elsewhere.log", path_);
    EXPECT_TRUE(event_->rearm());
    append(folder_ / "elsewhere.log");
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, WhatHappenedBeforeIsForgotten) {
    append(path_);
    EXPECT_TRUE(event_->rearm());
    EXPECT_FALSE(tells());
}

TEST_F(FileChangeEventTest, EachChangeIsToldUntilItIsForgotten) {
    EXPECT_TRUE(event_->rearm());
    append(path_);
    EXPECT_TRUE(tellsSoon());
    EXPECT_TRUE(tells());
    EXPECT_TRUE(event_->rearm());
    append(path_);
    EXPECT_TRUE(tellsSoon());
}

TEST_F(FileChangeEventTest, FolderThatWentIsTheEnd) {
    EXPECT_TRUE(event_->rearm());
    fs::remove_all(folder_ / "logs");
    EXPECT_TRUE(tellsSoon());
    EXPECT_FALSE(event_->rearm());
}

TEST_F(FileChangeEventTest, FolderThatWasRenamedIsTheEnd) {
    EXPECT_TRUE(event_->rearm());
    fs::rename(folder_ / "logs", folder_ / "other");
    EXPECT_TRUE(tellsSoon());
    EXPECT_FALSE(event_->rearm());
}

TEST_F(FileChangeEventTest, MissingFolderGivesTheSystemsWords) {
    const auto event = FileChangeEvent::open(folder_ / "missing/file.log");
    ASSERT_FALSE(event);
    EXPECT_EQ(event.error(), "No such file or directory");
}

}  // namespace
}  // namespace tarnbeck
