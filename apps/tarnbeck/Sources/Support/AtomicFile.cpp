#include "AtomicFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Paths.h"

namespace tarnbeck {
namespace {

// Where a write really goes: through links that lead somewhere, also to a file not made yet.
std::string resolvedTarget(const std::string& path) {
    std::string target = path;
    for (int hops = 0; hops < 40; ++hops) {
        char buffer[PATH_MAX];
        const ssize_t count = readlink(target.c_str(), buffer, sizeof buffer);
        if (count <= 0) return target;
        const std::string link(buffer, static_cast<std::size_t>(count));
        const std::string folder(parentPath(target));
        target = link.starts_with('/') || folder.empty() ? link : folder + "/" + link;
    }
    return target;
}

FileDescriptor createBeside(const std::string& target, mode_t mode, std::string& name) {
    static std::atomic<unsigned> counter{0};
    while (true) {
        name = target + "." + std::to_string(getpid()) + "." + std::to_string(counter++) + ".tmp";
        FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file || errno != EEXIST) return file;
    }
}

// Leaves of `buffers` what lies behind the first `count` bytes.
std::span<iovec> withoutFirst(std::span<iovec> buffers, std::size_t count) {
    while (!buffers.empty() && count >= buffers.front().iov_len) {
        count -= buffers.front().iov_len;
        buffers = buffers.subspan(1);
    }
    if (count > 0) {
        buffers.front().iov_base = static_cast<char*>(buffers.front().iov_base) + count;
        buffers.front().iov_len -= count;
    }
    return buffers;
}

// Many pieces in one call, which the system takes in as fast as a single one.
bool writeAll(int descriptor, std::span<const std::string_view> pieces) {
    std::vector<iovec> buffers;
    for (const std::string_view piece : pieces) {
        buffers.push_back({.iov_base = const_cast<char*>(piece.data()), .iov_len = piece.size()});
    }
    std::span<iovec> rest = withoutFirst(buffers, 0);
    while (!rest.empty()) {
        const auto batch = rest.first(std::min<std::size_t>(rest.size(), IOV_MAX));
        const ssize_t count = writev(descriptor, batch.data(), static_cast<int>(batch.size()));
        if (count >= 0) {
            rest = withoutFirst(rest, static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void flushFolderOf(const std::string& file) {
    const std::string parent(parentPath(file));
    const FileDescriptor folder(
        open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A file system that can't flush a folder says so; the rename stands all the same.
    if (folder) fsync(folder.get());
}

}  // namespace

std::optional<std::string> writeFileAtomically(const std::string& path, std::string_view bytes,
                                               mode_t mode) {
    return writeFileAtomically(path, {&bytes, 1}, mode);
}

std::optional<std::string> writeFileAtomically(const std::string& path,
                                               std::span<const std::string_view> pieces,
                                               mode_t mode) {
    const std::string target = resolvedTarget(path);
    struct stat existing {};
    const bool replaces = stat(target.c_str(), &existing) == 0;
    std::string temporary;
    FileDescriptor file = createBeside(target, mode, temporary);
    if (!file) return systemErrorText(errno);
    const bool written = (!replaces || fchmod(file.get(), existing.st_mode & 07777) == 0) &&
                         writeAll(file.get(), pieces) && fsync(file.get()) == 0;
    int error = written ? 0 : errno;
    file.close();
    if (written && rename(temporary.c_str(), target.c_str()) != 0) error = errno;
    if (error != 0) {
        unlink(temporary.c_str());
        return systemErrorText(error);
    }
    flushFolderOf(target);
    return std::nullopt;
}

}  // namespace tarnbeck
