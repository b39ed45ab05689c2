#include "InstanceLock.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace single_instance {
namespace {

std::string words(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

// Nobody depends on it, so nothing is done about errors.
void recordProcess(int descriptor) {
    const std::string content = std::to_string(getpid()) + "\n";
    [[maybe_unused]] const int emptied = ftruncate(descriptor, 0);
    [[maybe_unused]] const ssize_t written = write(descriptor, content.data(), content.size());
}

struct Describe {
    std::string operator()(const std::error_code& error) const {
        return "the folder of the lock can't be made: " + error.message();
    }
    std::string operator()(const InstanceLockError& error) const {
        return std::visit(*this, error.value);
    }
    std::string operator()(const InstanceLockError::OpenFailed& error) const {
        return "the lock file can't be opened: " + words(error.errorNumber);
    }
    std::string operator()(const InstanceLockError::LockFailed& error) const {
        return "the lock can't be taken: " + words(error.errorNumber);
    }
    std::string operator()(const InstanceLockError::AlreadyRunning& /*error*/) const {
        return "another copy is running";
    }
};

}  // namespace

bool AcquireError::isAlreadyRunning() const {
    return std::holds_alternative<InstanceLockError>(value) &&
           std::get<InstanceLockError>(value) ==
               InstanceLockError{InstanceLockError::AlreadyRunning{}};
}

std::string AcquireError::description() const {
    return std::visit(Describe{}, value);
}

std::variant<InstanceLock, AcquireError> InstanceLock::acquire(const std::string& lockURL,
                                                               FileManager& fileManager) {
    const std::string folder = lockURL.substr(0, lockURL.rfind('/'));
    if (const auto error = fileManager.createDirectory(folder)) return AcquireError{error};
    OwnedDescriptor file(open(lockURL.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) return AcquireError{InstanceLockError{InstanceLockError::OpenFailed{errno}}};
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if (error == EWOULDBLOCK) {
            return AcquireError{InstanceLockError{InstanceLockError::AlreadyRunning{}}};
        }
        return AcquireError{InstanceLockError{InstanceLockError::LockFailed{error}}};
    }
    recordProcess(file.get());
    return InstanceLock(std::move(file), lockURL);
}

InstanceLock::InstanceLock(OwnedDescriptor descriptor, std::string lockURL)
    : descriptor_(std::move(descriptor)), lockURL_(std::move(lockURL)) {}

InstanceLock::~InstanceLock() {
    if (descriptor_) flock(descriptor_.get(), LOCK_UN);
}

}  // namespace single_instance
