#include <array>
#include <csignal>
#include <cstring>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "ConfigurationFixture.h"
#include "FileDescriptor.h"
#include "PosixProcessLauncher.h"

namespace tarnbeck {
namespace {

constexpr int patience = 60'000;  // milliseconds, far beyond what any step takes

bool becomesReadable(int descriptor) {
    pollfd waited{.fd = descriptor, .events = POLLIN};
    return poll(&waited, 1, patience) == 1;
}

// The steps of writing in one folder, one at a time: a file made, written to, closed, renamed.
class WritingSteps {
  public:
    explicit WritingSteps(const std::string& folder) : events_(inotify_init1(IN_CLOEXEC)) {
        inotify_add_watch(events_.get(), folder.c_str(),
                          IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO);
    }

    // Waits until `count` more steps were seen.
    void waitFor(int count) {
        alignas(inotify_event) std::array<char, 4096> buffer{};
        while (count > 0 && becomesReadable(events_.get())) {
            const ssize_t size = read(events_.get(), buffer.data(), buffer.size());
            for (ssize_t position = 0; position < size; --count) {
                inotify_event event{};
                std::memcpy(&event, buffer.data() + position, sizeof event);
                position += static_cast<ssize_t>(sizeof event + event.len);
            }
        }
    }

  private:
    FileDescriptor events_;
};

class AppConfiguration_Killed : public testing::ConfigurationFixture {
  protected:
    // Lets a program save in a circle, and kills it when it has done `steps` further steps.
    void killSaverAfter(int steps) {
        auto child = launcher_.launch({.executable = CONFIG_SAVER, .arguments = {home_.path()}});
        ASSERT_TRUE(child) << child.error();
        const FileDescriptor output = (*child)->takeStandardOutput();
        ASSERT_TRUE(becomesReadable(output.get()));
        WritingSteps(place_.folder()).waitFor(steps);
        (*child)->kill();
        ASSERT_TRUE(becomesReadable((*child)->exitDescriptor()));
        ASSERT_FALSE((*child)->isRunning());
        ASSERT_EQ((*child)->terminationStatus(), SIGKILL);
    }

    PosixProcessLauncher launcher_;
};

TEST_F(AppConfiguration_Killed, LeavesTheOldOrTheNewFileAtWhateverMoment) {
    int interruptedSaves = 0;
    // On a busy machine the kill may come late in every one of sixty rounds.
    for (int round = 0; round < 60 || (interruptedSaves == 0 && round < 600); ++round) {
        killSaverAfter(round % 12);
        if (HasFatalFailure()) return;
        const std::size_t repositories = load().repoPaths.size();
        EXPECT_TRUE(repositories == 1 || repositories == 20000) << repositories;
        EXPECT_THAT(messages_, ::testing::IsEmpty());
        interruptedSaves += namesIn(".config/tarnbeck").size() > 1 ? 1 : 0;
        std::filesystem::remove_all(place_.folder());
    }
    EXPECT_GT(interruptedSaves, 0) << "no round met a save half done";
}

TEST_F(AppConfiguration_Killed, WhatWasLeftBehindIsNotInTheWayOfTheNextSave) {
    for (int round = 0; round < 12; ++round) killSaverAfter(round);
    ASSERT_TRUE(AppConfiguration{.showTags = false}.save(place_));
    EXPECT_FALSE(load().showTags);
}

}  // namespace
}  // namespace tarnbeck
