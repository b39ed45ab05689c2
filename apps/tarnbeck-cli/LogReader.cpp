#include "LogReader.h"

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FileSystem.h"
#include "ScanLog.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

FileDescriptor opened(const std::string& path) {
    return FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

bool areSame(const struct stat& left, const struct stat& right) {
    return left.st_ino == right.st_ino && left.st_dev == right.st_dev;
}

bool areSame(const FileDescriptor& left, const FileDescriptor& right) {
    struct stat one {};
    struct stat other {};
    return left && right && fstat(left.get(), &one) == 0 && fstat(right.get(), &other) == 0 &&
           areSame(one, other);
}

// Whether the path still leads to the open file. (Nowhere counts as there: nothing took its place.)
bool isStillAt(const std::string& path, const FileDescriptor& file) {
    struct stat atPath {};
    struct stat ours {};
    if (stat(path.c_str(), &atPath) != 0) return true;
    return file && fstat(file.get(), &ours) == 0 && areSame(atPath, ours);
}

// From where the last reading ended, or from the beginning when the file is shorter by now.
std::string readOn(const FileDescriptor& file) {
    struct stat information {};
    if (!file || fstat(file.get(), &information) != 0) return {};
    if (information.st_size < lseek(file.get(), 0, SEEK_CUR)) lseek(file.get(), 0, SEEK_SET);
    std::string bytes;
    std::array<char, 65536> buffer{};
    while (true) {
        const ssize_t count = read(file.get(), buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return bytes;
        }
    }
}

}  // namespace

Result<std::string> LogReader::readAll() {
    FileDescriptor earlier;
    // A log that is renamed between the two steps would be read twice.
    do {
        file_ = opened(path_);
        if (!file_ && errno != ENOENT) return Failure{systemErrorText(errno)};
        earlier = opened(ScanLog::earlierGeneration(path_));
        if (!earlier && errno != ENOENT) return Failure{systemErrorText(errno)};
    } while (areSame(file_, earlier));
    std::string bytes = readOn(earlier);
    bytes += readOn(file_);
    return bytes;
}

std::string LogReader::readNew() {
    std::string bytes = readOn(file_);
    while (!isStillAt(path_, file_)) {
        FileDescriptor next = opened(path_);
        if (!next) break;
        bytes += readOn(file_);  // what came until it was renamed
        file_ = std::move(next);
        bytes += readOn(file_);
    }
    return linesOf(std::move(bytes));
}

std::string LogReader::linesOf(std::string bytes) {
    std::string text = std::exchange(halfLine_, {}) + bytes;
    const std::size_t end = text.rfind('\n') + 1;
    halfLine_ = text.substr(end);
    text.resize(end);
    return text;
}

std::string_view lastLines(std::string_view text, std::size_t count) {
    std::size_t begin = text.size();
    while (begin > 0 && count > 0) {
        const std::size_t lineFeed =
            begin < 2 ? std::string_view::npos : text.rfind('\n', begin - 2);
        begin = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
        --count;
    }
    return text.substr(begin);
}

std::string printableLines(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\n\t");
        result += printable(text.substr(0, end));
        if (end == std::string_view::npos) break;
        result += text[end];
        text.remove_prefix(end + 1);
    }
    return result;
}

}  // namespace tarnbeck::cli
