#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "InstanceLock.h"
#include "MachineRights.h"
#include "TemporaryFolder.h"

namespace single_instance {
namespace {

using tarnbeck::testing::contentOf;
using tarnbeck::testing::TemporaryFolder;

class InstanceLock_Acquire : public ::testing::Test {
  protected:
    std::variant<InstanceLock, AcquireError> acquire() { return acquire(path_); }
    std::variant<InstanceLock, AcquireError> acquire(const std::string& path) {
        return InstanceLock::acquire(path, fileManager_);
    }
    static bool isLock(const std::variant<InstanceLock, AcquireError>& acquired) {
        return std::holds_alternative<InstanceLock>(acquired);
    }

    TemporaryFolder folder_;
    std::string path_ = folder_ / "org.example.App/one.lock";
    SystemFileManager fileManager_;
};

TEST_F(InstanceLock_Acquire, MakesFolderAndFile) {
    const auto lock = acquire();
    ASSERT_TRUE(isLock(lock));
    EXPECT_EQ(std::get<InstanceLock>(lock).lockURL(), path_);
    EXPECT_EQ(contentOf(path_), std::to_string(getpid()) + "\n");
}

TEST_F(InstanceLock_Acquire, MakesTheFileForTheUserAlone) {
    const auto lock = acquire();
    struct stat information {};
    ASSERT_EQ(stat(path_.c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 07777, 0600U);
}

TEST_F(InstanceLock_Acquire, KeepsTheDescriptorFromChildren) {
    const auto lock = acquire();
    ASSERT_TRUE(isLock(lock));
    const int descriptor = std::get<InstanceLock>(lock).fileDescriptor();
    EXPECT_EQ(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

// A lock belongs to the open file, so that one process can stand in for two.
TEST_F(InstanceLock_Acquire, FindsTheOtherCopy) {
    const auto lock = acquire();
    const auto second = acquire();
    ASSERT_FALSE(isLock(second));
    EXPECT_TRUE(std::get<AcquireError>(second).isAlreadyRunning());
}

TEST_F(InstanceLock_Acquire, LeavesTheContentOfTheOtherCopyAlone) {
    const auto lock = acquire();
    folder_.write("org.example.App/one.lock", "of the first\n");
    acquire();
    EXPECT_EQ(contentOf(path_), "of the first\n");
}

TEST_F(InstanceLock_Acquire, TakesOverTheFileOfADeadProcess) {
    folder_.write("org.example.App/one.lock", "999999999 and more than fits\n");
    EXPECT_TRUE(isLock(acquire()));
    EXPECT_EQ(contentOf(path_), std::to_string(getpid()) + "\n");
}

TEST_F(InstanceLock_Acquire, NamesTheProcessInAFileThatCannotBeCut) {
    SystemFileManager().createDirectory(folder_ / "org.example.App");
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    const OwnedDescriptor reader(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const auto lock = acquire();
    ASSERT_TRUE(isLock(lock));
    std::string content(64, ' ');
    content.resize(static_cast<std::size_t>(
        std::max<ssize_t>(read(reader.get(), content.data(), content.size()), 0)));
    EXPECT_EQ(content, std::to_string(getpid()) + "\n");
}

TEST_F(InstanceLock_Acquire, IsPossibleAgainWhenTheLockWent) {
    { const auto lock = acquire(); }
    EXPECT_TRUE(isLock(acquire()));
}

TEST_F(InstanceLock_Acquire, FollowsTheLockWhereItIsMovedTo) {
    std::optional<InstanceLock> kept;
    {
        auto lock = acquire();
        kept.emplace(std::get<InstanceLock>(std::move(lock)));
    }
    EXPECT_FALSE(isLock(acquire()));
    kept.reset();
    EXPECT_TRUE(isLock(acquire()));
}

TEST_F(InstanceLock_Acquire, LeavesTheFileWhereItIs) {
    { const auto lock = acquire(); }
    EXPECT_EQ(access(path_.c_str(), F_OK), 0);
}

TEST_F(InstanceLock_Acquire, TellsOfAFolderThatCantBeMade) {
    const std::string file = folder_.write("file", "");
    const auto acquired = acquire(file + "/below/one.lock");
    ASSERT_FALSE(isLock(acquired));
    EXPECT_EQ(std::get<AcquireError>(acquired).description(),
              "the folder of the lock can't be made: Not a directory");
    EXPECT_FALSE(std::get<AcquireError>(acquired).isAlreadyRunning());
}

TEST_F(InstanceLock_Acquire, TellsOfAFileThatCantBeOpened) {
    folder_.makeFolder("org.example.App/one.lock");
    const auto acquired = acquire();
    ASSERT_FALSE(isLock(acquired));
    const auto& error = std::get<InstanceLockError>(std::get<AcquireError>(acquired).value);
    EXPECT_EQ(error, InstanceLockError{InstanceLockError::OpenFailed{EISDIR}});
    EXPECT_EQ(std::get<AcquireError>(acquired).description(),
              "the lock file can't be opened: Is a directory");
}

TEST_F(InstanceLock_Acquire, TellsOfAFolderThatCantBeWritten) {
    const std::string folder = folder_.makeFolder("org.example.App");
    chmod(folder.c_str(), 0500);
    const tarnbeck::testing::WithoutRootRights ordinary;
    const auto acquired = acquire();
    ASSERT_FALSE(isLock(acquired));
    EXPECT_EQ(std::get<AcquireError>(acquired).description(),
              "the lock file can't be opened: Permission denied");
}

TEST(InstanceLock_Description, NamesWhatWentWrongWithTheLock) {
    EXPECT_EQ(AcquireError{InstanceLockError{InstanceLockError::LockFailed{ENOLCK}}}.description(),
              "the lock can't be taken: No locks available");
    EXPECT_EQ(AcquireError{InstanceLockError{InstanceLockError::AlreadyRunning{}}}.description(),
              "another copy is running");
}

}  // namespace
}  // namespace single_instance
