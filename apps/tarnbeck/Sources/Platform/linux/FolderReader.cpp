#include "FolderReader.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "FileDescriptor.h"

namespace tarnbeck {
namespace {

// What the kernel writes for each entry; the name follows, ended by a zero byte.
struct EntryHead {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short length;
    unsigned char type;
};
constexpr std::size_t nameOffset = offsetof(EntryHead, type) + 1;

bool isFolder(int folder, const char* name, unsigned char type) {
    if (type != DT_UNKNOWN) return type == DT_DIR;
    struct stat information {};
    return fstatat(folder, name, &information, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(information.st_mode);
}

void tellEntries(int folder, const std::byte* bytes, std::size_t count,
                 const FolderReader::Found& found) {
    for (std::size_t at = 0; at < count;) {
        EntryHead head{};
        std::memcpy(&head, bytes + at, nameOffset);
        const char* name = reinterpret_cast<const char*>(bytes + at + nameOffset);
        const std::string_view text(name);
        if (text != "." && text != "..") found(text, isFolder(folder, name, head.type));
        at += head.length;
    }
}

}  // namespace

FolderReader::FolderReader() : buffer_(std::make_unique<std::byte[]>(capacity)) {}

int FolderReader::read(const std::string& path, Links links, const Found& found) {
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::never ? O_NOFOLLOW : 0);
    const FileDescriptor folder(open(path.c_str(), flags));
    if (!folder) return errno;
    while (true) {
        const long count = syscall(SYS_getdents64, folder.get(), buffer_.get(), capacity);
        if (count == 0) return 0;
        if (count < 0) return errno;
        tellEntries(folder.get(), buffer_.get(), static_cast<std::size_t>(count), found);
    }
}

}  // namespace tarnbeck
