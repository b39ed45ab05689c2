#include "FileSystem.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileDescriptor.h"
#include "Paths.h"

namespace tarnbeck {

bool exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

bool isDirectory(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

bool isExecutableFile(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 && S_ISREG(information.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::string systemErrorText(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

std::optional<std::string> createDirectories(const std::string& path, mode_t mode) {
    if (isDirectory(path)) return std::nullopt;
    const std::string parent(parentPath(path));
    if (!parent.empty() && parent != path) {
        if (auto failure = createDirectories(parent, 0777)) return failure;
    }
    if (mkdir(path.c_str(), mode) == 0) return std::nullopt;
    const int error = errno;
    if (error == EEXIST && isDirectory(path)) return std::nullopt;
    return systemErrorText(error);
}

Result<std::string> readFile(const std::string& path, std::size_t largest) {
    // Opening a pipe would wait for its writer, and a device may have no end.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) return Failure{systemErrorText(errno)};
    struct stat information {};
    if (fstat(file.get(), &information) != 0) return Failure{systemErrorText(errno)};
    if (S_ISDIR(information.st_mode)) return Failure{systemErrorText(EISDIR)};
    if (!S_ISREG(information.st_mode)) return Failure{"Not a regular file"};
    std::string bytes;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = read(file.get(), buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
            if (bytes.size() > largest) return Failure{systemErrorText(EFBIG)};
        } else if (count == 0) {
            return bytes;
        } else if (errno != EINTR) {
            return Failure{systemErrorText(errno)};
        }
    }
}

}  // namespace tarnbeck
