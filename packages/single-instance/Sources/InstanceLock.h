// The lock that only one process holds at a time.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>
#include <variant>

#include "FileManager.h"
#include "OwnedDescriptor.h"

namespace single_instance {

struct InstanceLockError {
    struct OpenFailed {
        std::int32_t errorNumber;
        bool operator==(const OpenFailed&) const = default;
    };
    struct LockFailed {
        std::int32_t errorNumber;
        bool operator==(const LockFailed&) const = default;
    };
    struct AlreadyRunning {
        bool operator==(const AlreadyRunning&) const = default;
    };
    std::variant<OpenFailed, LockFailed, AlreadyRunning> value;

    bool operator==(const InstanceLockError&) const = default;
};

// Why there is no lock: its folder could not be made, or what came after that failed.
struct AcquireError {
    std::variant<std::error_code, InstanceLockError> value;

    bool isAlreadyRunning() const;
    // For a log, with the system's words.
    std::string description() const;
};

// An exclusive lock on a file. It is released when this goes, and by the system when the process
// ends in whatever way; the file stays. Its content is for people: no code reads it back.
class InstanceLock {
  public:
    // Creates the folder and the file where they are missing, and writes the number of this process
    // into the file. Does not wait.
    static std::variant<InstanceLock, AcquireError> acquire(const std::string& lockURL,
                                                            FileManager& fileManager);
    InstanceLock(InstanceLock&&) = default;
    InstanceLock& operator=(InstanceLock&&) = delete;
    ~InstanceLock();

    int fileDescriptor() const { return descriptor_.get(); }
    const std::string& lockURL() const { return lockURL_; }

  private:
    InstanceLock(OwnedDescriptor descriptor, std::string lockURL);

    OwnedDescriptor descriptor_;
    std::string lockURL_;
};

}  // namespace single_instance
