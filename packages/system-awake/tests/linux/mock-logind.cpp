// Plays logind's locks on the system bus (the one that DBUS_SYSTEM_BUS_ADDRESS names), for tests.
//   mock-logind                 hands out locks
//   mock-logind --refuse WORDS  refuses each with these words
//   mock-logind --silent        never answers
// Says "ready" when it can be asked, "taken LOCK" and "released LOCK" for each lock, where LOCK is
// "WHAT|WHO|WHY|MODE", and "asked" for a question that stays without an answer. Answers
// ListInhibitors. Ends with its input or with the bus.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <list>
#include <string>

#include <fcntl.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>
#include <unistd.h>

namespace {

struct Lock {
    std::string what;
    std::string who;
    std::string why;
    std::string mode;
    std::uint32_t user = 0;
    std::uint32_t process = 0;
    int readEnd = -1;  // tells when the last holder has gone
};

struct Logind {
    sd_event* events = nullptr;
    std::list<Lock> locks;
    bool isSilent = false;
    const char* refusal = nullptr;
};

Logind logind;

void say(const char* event, const Lock& lock) {
    std::printf("%s %s|%s|%s|%s\n", event, lock.what.c_str(), lock.who.c_str(), lock.why.c_str(),
                lock.mode.c_str());
    std::fflush(stdout);
}

int release(sd_event_source* source, int descriptor, std::uint32_t /*events*/, void* /*data*/) {
    sd_event_source_disable_unref(source);
    logind.locks.remove_if([descriptor](const Lock& lock) {
        if (lock.readEnd != descriptor) return false;
        say("released", lock);
        return true;
    });
    close(descriptor);
    return 0;
}

void noteSender(sd_bus_message* message, Lock& lock) {
    sd_bus_creds* credentials = nullptr;
    const std::uint64_t wanted = SD_BUS_CREDS_EUID | SD_BUS_CREDS_PID;
    if (sd_bus_query_sender_creds(message, wanted, &credentials) < 0) return;
    uid_t user = 0;
    pid_t process = 0;
    sd_bus_creds_get_euid(credentials, &user);
    sd_bus_creds_get_pid(credentials, &process);
    lock.user = user;
    lock.process = static_cast<std::uint32_t>(process);
    sd_bus_creds_unref(credentials);
}

int inhibit(sd_bus_message* message, void* /*data*/, sd_bus_error* error) {
    if (logind.isSilent) {
        std::puts("asked");
        std::fflush(stdout);
        return 1;
    }
    if (logind.refusal) {
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, logind.refusal);
    }
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    if (const int read = sd_bus_message_read(message, "ssss", &what, &who, &why, &mode); read < 0) {
        return read;
    }
    if (!*what) return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "Invalid what");
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) return -errno;
    Lock lock{.what = what, .who = who, .why = why, .mode = mode, .readEnd = ends[0]};
    noteSender(message, lock);
    sd_event_add_io(logind.events, nullptr, ends[0], 0, release, nullptr);
    logind.locks.push_back(lock);
    say("taken", lock);
    const int replied = sd_bus_reply_method_return(message, "h", ends[1]);
    close(ends[1]);
    return replied;
}

int listInhibitors(sd_bus_message* message, void* /*data*/, sd_bus_error* /*error*/) {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(message, &reply);
    sd_bus_message_open_container(reply, 'a', "(ssssuu)");
    for (const Lock& lock : logind.locks) {
        sd_bus_message_append(reply, "(ssssuu)", lock.what.c_str(), lock.who.c_str(),
                              lock.why.c_str(), lock.mode.c_str(), lock.user, lock.process);
    }
    sd_bus_message_close_container(reply);
    const int sent = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return sent;
}

int endWithInput(sd_event_source* source, int /*fd*/, std::uint32_t /*events*/, void* /*data*/) {
    return sd_event_exit(sd_event_source_get_event(source), 0);
}

const sd_bus_vtable manager[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Inhibit", "ssss", "h", inhibit, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ListInhibitors", "", "a(ssssuu)", listInhibitors, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "--silent") == 0) logind.isSilent = true;
    if (count > 2 && std::strcmp(arguments[1], "--refuse") == 0) logind.refusal = arguments[2];
    sd_bus* bus = nullptr;
    if (sd_event_default(&logind.events) < 0 || sd_bus_open_system(&bus) < 0) return 1;
    sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager", manager, nullptr);
    if (sd_bus_request_name(bus, "org.freedesktop.login1", 0) < 0) return 1;
    sd_bus_set_exit_on_disconnect(bus, 1);
    sd_bus_attach_event(bus, logind.events, SD_EVENT_PRIORITY_NORMAL);
    sd_event_add_io(logind.events, nullptr, STDIN_FILENO, 0, endWithInput, nullptr);
    std::puts("ready");
    std::fflush(stdout);
    return sd_event_loop(logind.events);
}
