#include "LogindLock.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <systemd/sd-bus.h>

namespace system_awake {
namespace {

using Clock = std::chrono::steady_clock;

struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

struct ReleaseMessage {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, ReleaseMessage>;

std::string words(int negativeError) {
    return std::generic_category().message(-negativeError);
}

LaunchFailure unreachable(int negativeError) {
    return {"The system bus can't be reached: " + words(negativeError)};
}

// The bus owns the message only for the time of the call.
int keepAnswer(sd_bus_message* message, void* answer, sd_bus_error* /*error*/) {
    static_cast<Message*>(answer)->reset(sd_bus_message_ref(message));
    return 1;
}

// Sends the question behind the greeting that the bus is still busy with. Negative on failure.
int ask(sd_bus* bus, const LogindRequest& request, Message& answer) {
    return sd_bus_call_method_async(bus, nullptr, "org.freedesktop.login1",
                                    "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                    "Inhibit", keepAnswer, &answer, "ssss", request.what.c_str(),
                                    request.who.c_str(), request.why.c_str(), "block");
}

// Runs the bus until the answer is there. The library's own time-outs count from a connection that
// stands; a bus that never greets would hold them up for a minute and a half.
std::optional<LaunchFailure> failureOfWaiting(sd_bus* bus, const Message& answer,
                                              std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (!answer) {
        const int done = sd_bus_process(bus, nullptr);
        if (done < 0) return unreachable(done);
        if (done > 0) continue;
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return LaunchFailure{"logind did not answer within " + std::to_string(timeout.count()) +
                                 " ms"};
        }
        const int waited = sd_bus_wait(bus, static_cast<std::uint64_t>(left.count()));
        if (waited < 0 && waited != -EINTR) return unreachable(waited);
    }
    return std::nullopt;
}

std::variant<OwnedDescriptor, LaunchFailure> lockOf(sd_bus_message* answer) {
    if (const sd_bus_error* error = sd_bus_message_get_error(answer)) {
        return LaunchFailure{error->message ? error->message : error->name};
    }
    int descriptor = -1;  // the message's own
    const int read = sd_bus_message_read(answer, "h", &descriptor);
    if (read < 0) return LaunchFailure{"logind's answer can't be read: " + words(read)};
    OwnedDescriptor lock(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!lock) return LaunchFailure{words(-errno)};
    return lock;
}

}  // namespace

std::variant<OwnedDescriptor, LaunchFailure> takeLogindLock(const LogindRequest& request) {
    sd_bus* opened = nullptr;
    const int connected = sd_bus_open_system(&opened);
    if (connected < 0) return unreachable(connected);
    Message answer;
    const Bus bus(opened);
    const int asked = ask(bus.get(), request, answer);
    if (asked < 0) return unreachable(asked);
    if (auto failure = failureOfWaiting(bus.get(), answer, request.timeout)) return *failure;
    return lockOf(answer.get());
}

}  // namespace system_awake
