// Keeps the machine awake by a lock of logind's, which a child holds.
#pragma once

#include <chrono>
#include <string>

#include "CaffeinateLaunching.h"

namespace system_awake {

// logind is asked first; what it (or the system bus) says against it is the failure, word for word.
// It hands out a lock that lasts as long as its descriptor is open anywhere. That descriptor goes
// to a child that does nothing but read a pipe whose only other end this process holds: the child
// ends, and the lock with it, when this process ends in whatever way, and when it is terminated.
//
// "-d" takes a lock against idleness, "-i" against idleness and sleep, "-s" against sleep. logind
// has nothing for the disks ("-m"): alone, that fails.
class LogindInhibitLauncher : public CaffeinateLaunching {
  public:
    struct Options {
        std::string who;  // as people read it in lists of locks
        std::string why;
        // For all that is asked of the bus: `start` blocks no longer.
        std::chrono::milliseconds timeout{200};
        // What is run as the child, without arguments: any program that reads its input to the end.
        std::string holderExecutable = "/bin/cat";
    };
    explicit LogindInhibitLauncher(Options options);

    // The child is bound to this process, also where no number is given: a lock that outlived its
    // application would be nobody's. The number of another process fails.
    std::variant<std::unique_ptr<CaffeinateProcess>, LaunchFailure> start(
        const std::vector<std::string>& arguments,
        std::optional<std::int32_t> boundToProcessID) override;

  private:
    Options options_;
};

}  // namespace system_awake
