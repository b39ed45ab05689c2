#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileManager.h"
#include "OwnedDescriptor.h"

namespace single_instance {
namespace {

// What is larger was not written here.
constexpr off_t largestFile = 16 << 20;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

bool isDirectory(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<std::string> readToTheEnd(int descriptor) {
    std::string bytes;
    std::array<char, 1 << 14> buffer{};
    while (true) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno != EINTR) return std::nullopt;
        if (count == 0) return bytes;
        if (count > 0) bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

}  // namespace

std::error_code SystemFileManager::createDirectory(const std::string& path) {
    if (isDirectory(path) || mkdir(path.c_str(), 0700) == 0) return {};
    if (errno == ENOENT) {
        const auto slash = path.find_last_not_of('/') == std::string::npos
                               ? std::string::npos
                               : path.rfind('/', path.find_last_not_of('/'));
        if (slash == std::string::npos || slash == 0) return lastError();
        if (const auto error = createDirectory(path.substr(0, slash))) return error;
        if (mkdir(path.c_str(), 0700) == 0) return {};
    }
    // Another process may have been quicker.
    const std::error_code error = lastError();
    return isDirectory(path) ? std::error_code() : error;
}

std::error_code SystemFileManager::writeAtomically(const std::string& path,
                                                   std::string_view bytes) {
    const std::string temporary = path + ".tmp";
    const OwnedDescriptor file(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) return lastError();
    if (writeAll(file.get(), bytes) && fsync(file.get()) == 0 &&
        std::rename(temporary.c_str(), path.c_str()) == 0) {
        return {};
    }
    const std::error_code error = lastError();
    unlink(temporary.c_str());
    return error;
}

std::optional<std::vector<std::string>> SystemFileManager::contentsOfDirectory(
    const std::string& path) {
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(path.c_str()));
    if (!folder) return std::nullopt;
    std::vector<std::string> names;
    while (const dirent* entry = readdir(folder.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    return names;
}

std::optional<std::string> SystemFileManager::contents(const std::string& path) {
    const OwnedDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat information {};
    if (!file || fstat(file.get(), &information) != 0) return std::nullopt;
    if (!S_ISREG(information.st_mode) || information.st_size > largestFile) return std::nullopt;
    return readToTheEnd(file.get());
}

std::error_code SystemFileManager::removeFile(const std::string& path) {
    return unlink(path.c_str()) == 0 ? std::error_code() : lastError();
}

}  // namespace single_instance
