#include <array>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>

#include "FileDescriptor.h"
#include "MachineRights.h"
#include "SystemLog.h"

namespace tarnbeck {
namespace {

// What stands where the system's logger listens.
FileDescriptor listenAsLogger() {
    FileDescriptor listener(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    EXPECT_EQ(bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return listener;
}

std::string entryThatCame(const FileDescriptor& listener) {
    std::array<char, 4096> buffer{};
    const ssize_t count = recv(listener.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

TEST(SystemLog, EntryHasTheLevelTheCategoryAndTheWords) {
    std::string entry;
    const auto failure = testing::runOnSmallDisk("/dev", 1 << 20, [&] {
        const FileDescriptor listener = listenAsLogger();
        writeError("git-discard", "Discard failed for 100%s: fatal: ä");
        entry = entryThatCame(listener);
    });
    if (failure) GTEST_SKIP() << "this machine gives no folder for devices: " << *failure;
    constexpr const char* userFacilityAndError = "<11>";
    EXPECT_THAT(entry, ::testing::StartsWith(userFacilityAndError));
    EXPECT_THAT(entry, ::testing::HasSubstr(": git-discard: Discard failed for 100%s: fatal: ä"));
}

TEST(SystemLog, EntryThatNobodyTakesIsLostQuietly) {
    const auto failure = testing::runOnSmallDisk("/dev", 1 << 20, [] {
        ::testing::internal::CaptureStderr();
        writeError("git-discard", "nobody listens");
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    });
    if (failure) GTEST_SKIP() << "this machine gives no folder for devices: " << *failure;
}

}  // namespace
}  // namespace tarnbeck
