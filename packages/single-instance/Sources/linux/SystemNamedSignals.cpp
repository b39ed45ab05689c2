#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "NamedSignals.h"
#include "OwnedDescriptor.h"
#include "UserSurroundings.h"

namespace single_instance {
namespace {

// How many can observe one signal. Each has a place of its own, and a signal goes to all places.
constexpr int places = 16;

struct Address {
    sockaddr_un content{.sun_family = AF_UNIX, .sun_path = {}};
    socklen_t length = 0;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&content); }
};

// FNV-1a.
std::uint64_t hash(std::string_view text) {
    std::uint64_t result = 14695981039346656037U;
    for (const char character : text) {
        result = (result ^ static_cast<unsigned char>(character)) * 1099511628211U;
    }
    return result;
}

// The leading zero makes it a name that no file stands for. The hash is of the whole name too, of
// which there may be no room for more than the beginning.
Address addressOf(const std::string& name, int place) {
    const std::string text = fmt::format("single-instance/{}/{:016x}/{}/{}", getuid(),
                                         hash(userHome() + '\0' + name), name.substr(0, 48), place);
    Address address;
    text.copy(address.content.sun_path + 1, sizeof address.content.sun_path - 1);
    address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    return address;
}

// Bound to the first place that is free. The sender's credentials come with each message only if
// that was asked for before the first one.
OwnedDescriptor socketOfObserver(const std::string& name) {
    OwnedDescriptor result(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int wanted = 1;
    if (setsockopt(result.get(), SOL_SOCKET, SO_PASSCRED, &wanted, sizeof wanted) != 0) return {};
    for (int place = 0; place < places; ++place) {
        const Address address = addressOf(name, place);
        if (bind(result.get(), address.get(), address.length) == 0) return result;
    }
    return {};
}

// Takes one message off the socket. There is room for credentials alone, so that descriptors which
// somebody sends along are closed by the system. Absent when there is no message.
std::optional<uid_t> senderOfMessage(int socket) {
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(ucred))> control{};
    msghdr message{};
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    if (recvmsg(socket, &message, MSG_CMSG_CLOEXEC) < 0) return std::nullopt;
    const cmsghdr* header = CMSG_FIRSTHDR(&message);
    ucred credentials{.pid = 0, .uid = static_cast<uid_t>(-1), .gid = 0};
    if (header && header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_CREDENTIALS) {
        std::memcpy(&credentials, CMSG_DATA(header), sizeof credentials);
    }
    return credentials.uid;
}

// A thread that sleeps until a signal comes or the end does.
class Observer {
  public:
    // Absent where the system can't.
    static std::shared_ptr<void> start(const std::string& name, std::function<void()> handler) {
        auto observer = std::make_shared<Observer>();
        observer->socket_ = socketOfObserver(name);
        observer->end_ = OwnedDescriptor(eventfd(0, EFD_CLOEXEC));
        observer->handler_ = std::move(handler);
        if (!observer->socket_ || !observer->end_ || !observer->startThread()) return nullptr;
        return observer;
    }

    Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() {
        if (!thread_.joinable()) return;
        eventfd_write(end_.get(), 1);
        thread_.join();
    }

  private:
    // Signals of the other kind are for the threads that were there before.
    bool startThread() {
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::system_error&) {
            thread_ = std::thread();  // the caller sees that there is none
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        return thread_.joinable();
    }

    void run() const {
        while (true) {
            std::array<pollfd, 2> sources{pollfd{socket_.get(), POLLIN, 0},
                                          pollfd{end_.get(), POLLIN, 0}};
            if (poll(sources.data(), sources.size(), -1) < 0 && errno != EINTR) return;
            if (sources[1].revents != 0) return;
            if (sources[0].revents != 0 && senderOfMessage(socket_.get()) == getuid()) handler_();
        }
    }

    OwnedDescriptor socket_;
    OwnedDescriptor end_;
    std::function<void()> handler_;
    std::thread thread_;
};

class SocketSignals : public NamedSignals {
  public:
    // A place whose queue is full has signals waiting, so that one more would tell nothing new.
    void post(const std::string& name) override {
        const OwnedDescriptor sender(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        for (int place = 0; place < places; ++place) {
            const Address address = addressOf(name, place);
            sendto(sender.get(), "", 0, MSG_NOSIGNAL, address.get(), address.length);
        }
    }

    std::shared_ptr<void> observe(const std::string& name, std::function<void()> handler) override {
        return Observer::start(name, std::move(handler));
    }
};

}  // namespace

std::unique_ptr<NamedSignals> makeSystemNamedSignals() {
    return std::make_unique<SocketSignals>();
}

}  // namespace single_instance
