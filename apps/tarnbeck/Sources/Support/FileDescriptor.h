// One open file descriptor, closed exactly once. Not bound to a thread; owned by one at a time.
#pragma once

#include <utility>

#include <unistd.h>

namespace tarnbeck {

class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    void close() {
        if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    }

  private:
    int descriptor_ = -1;
};

}  // namespace tarnbeck
