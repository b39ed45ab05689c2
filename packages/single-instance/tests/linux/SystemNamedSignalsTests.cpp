#include <array>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "NamedSignals.h"
#include "OwnDescriptors.h"
#include "OwnedDescriptor.h"

namespace single_instance::testing {
namespace {

using tarnbeck::testing::openDescriptors;

class Count {
  public:
    std::function<void()> handler() {
        return [this] {
            const std::lock_guard lock(mutex_);
            ++count_;
            changed_.notify_all();
        };
    }
    // False when they do not come.
    bool waitFor(int count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(60), [&] { return count_ >= count; });
    }
    int get() {
        const std::lock_guard lock(mutex_);
        return count_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
};

// The addresses of this test's sockets, as the system lists them.
std::vector<std::string> addresses(const std::string& name) {
    std::ifstream sockets("/proc/net/unix");
    std::vector<std::string> found;
    for (std::string line; std::getline(sockets, line);) {
        const auto begin = line.find("@single-instance/");
        if (begin != std::string::npos && line.find(name) != std::string::npos) {
            found.push_back(line.substr(begin + 1));
        }
    }
    return found;
}

class SystemNamedSignals_Observer : public ::testing::Test {
  protected:
    std::shared_ptr<void> observe(Count& count) {
        return signals_->observe(name_, count.handler());
    }
    void post() { signals_->post(name_); }

    // Of its own for each run of a test.
    std::string name_ = "test." + std::to_string(getpid());
    std::unique_ptr<NamedSignals> signals_ = makeSystemNamedSignals();
    Count count_;
};

TEST_F(SystemNamedSignals_Observer, HearsOfASignal) {
    const auto observer = observe(count_);
    post();
    EXPECT_TRUE(count_.waitFor(1));
}

TEST_F(SystemNamedSignals_Observer, HearsOfItsOwnSignalOnly) {
    Count other;
    const auto observer = observe(count_);
    const auto second = signals_->observe(name_ + ".other", other.handler());
    post();
    signals_->post(name_ + ".other");
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_TRUE(other.waitFor(1));
    EXPECT_EQ(count_.get(), 1);
    EXPECT_EQ(other.get(), 1);
}

TEST_F(SystemNamedSignals_Observer, HearsOnAThreadOfTheSystem) {
    std::thread::id thread;
    Count heard;
    const auto observer = signals_->observe(name_, [&, told = heard.handler()] {
        thread = std::this_thread::get_id();
        told();
    });
    post();
    ASSERT_TRUE(heard.waitFor(1));
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(SystemNamedSignals_Observer, HearsNoMoreOnceItHasGone) {
    Count still;
    const auto last = observe(still);
    observe(count_).reset();
    post();
    EXPECT_TRUE(still.waitFor(1));
    EXPECT_EQ(count_.get(), 0);
}

TEST_F(SystemNamedSignals_Observer, IsNotTheOnlyOne) {
    Count second;
    const auto observer = observe(count_);
    const auto another = observe(second);
    post();
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_TRUE(second.waitFor(1));
}

TEST_F(SystemNamedSignals_Observer, TakesThePlaceOfOneThatWent) {
    auto observer = observe(count_);
    observer.reset();
    observer = observe(count_);
    post();
    EXPECT_TRUE(count_.waitFor(1));
}

TEST_F(SystemNamedSignals_Observer, IsNoneWhereAllPlacesAreTaken) {
    std::vector<std::shared_ptr<void>> observers;
    for (int place = 0; place < 16; ++place) observers.push_back(observe(count_));
    EXPECT_FALSE(observe(count_));
    post();
    EXPECT_TRUE(count_.waitFor(16));
}

TEST_F(SystemNamedSignals_Observer, HearsAfterTheLastOfManySignals) {
    const auto observer = observe(count_);
    for (int round = 1; round <= 1000; ++round) post();
    EXPECT_TRUE(count_.waitFor(1));
    const int before = count_.get();
    post();
    EXPECT_TRUE(count_.waitFor(std::min(before + 1, 1001)));
}

TEST_F(SystemNamedSignals_Observer, HearsOnlyOfTheSameHome) {
    setenv("HOME", "/home/one", 1);
    const auto observer = observe(count_);
    setenv("HOME", "/home/two", 1);
    post();
    setenv("HOME", "/home/one/", 1);
    post();
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_EQ(count_.get(), 1);
}

TEST_F(SystemNamedSignals_Observer, HasAnAddressThatTellsUserAndName) {
    const auto observer = observe(count_);
    const auto found = addresses(name_);
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0].starts_with("single-instance/" + std::to_string(getuid()) + "/"));
    EXPECT_TRUE(found[0].ends_with("/" + name_ + "/0"));
}

TEST_F(SystemNamedSignals_Observer, HasRoomForNamesOfAnyLengthAndBytes) {
    name_ = std::string(1000, 'n') + '\0' + "\xff" + std::to_string(getpid());
    Count other;
    const auto observer = observe(count_);
    const auto second = signals_->observe(name_ + "!", other.handler());
    post();
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_EQ(other.get(), 0);
}

TEST_F(SystemNamedSignals_Observer, LeavesNothingBehind) {
    const auto before = openDescriptors();
    observe(count_).reset();
    post();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_TRUE(addresses(name_).empty());
}

TEST_F(SystemNamedSignals_Observer, SignalThatNobodyHearsIsLost) {
    post();
    const auto observer = observe(count_);
    post();
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_EQ(count_.get(), 1);
}

// Where an observer of this test listens.
sockaddr_un addressIn(const std::string& text, socklen_t& length) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    text.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    return address;
}

TEST_F(SystemNamedSignals_Observer, PassesOverSignalsOfOtherUsers) {
    if (getuid() != 0) GTEST_SKIP() << "only root can become another user";
    const auto observer = observe(count_);
    socklen_t length = 0;
    const sockaddr_un address = addressIn(addresses(name_).at(0), length);
    const OwnedDescriptor sender(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const pid_t other = fork();
    if (other == 0) {
        const bool sent =
            setuid(65534) == 0 && sendto(sender.get(), "", 0, 0,
                                         reinterpret_cast<const sockaddr*>(&address), length) == 0;
        _exit(sent ? 0 : 1);
    }
    int status = -1;
    waitpid(other, &status, 0);
    EXPECT_EQ(status, 0);
    post();
    EXPECT_TRUE(count_.waitFor(1));
    EXPECT_EQ(count_.get(), 1);
}

// The pipe's other end would never come to its end if the descriptor stayed open.
TEST_F(SystemNamedSignals_Observer, KeepsNoDescriptorThatSomebodySendsAlong) {
    const auto observer = observe(count_);
    socklen_t length = 0;
    sockaddr_un address = addressIn(addresses(name_).at(0), length);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_name = &address;
    message.msg_namelen = length;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &ends[1], sizeof(int));
    const OwnedDescriptor sender(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(sendmsg(sender.get(), &message, 0), 0);
    close(ends[1]);
    EXPECT_TRUE(count_.waitFor(1));
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    close(ends[0]);
}

}  // namespace
}  // namespace single_instance::testing
