// Signals between processes of one user: addressed by a name, without content.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace single_instance {

class NamedSignals {
  public:
    NamedSignals() = default;
    NamedSignals(const NamedSignals&) = delete;
    NamedSignals& operator=(const NamedSignals&) = delete;
    virtual ~NamedSignals() = default;

    // Reaches those who observe at this moment; nobody may. Does not wait. Any thread.
    virtual void post(const std::string& name) = 0;

    // `handler` is called on a thread of the system's choosing as long as the result is held, and
    // not once that has gone, which must not be within the call. Signals that come closely one
    // after the other may become fewer, but the last one is followed by a call. Nothing is returned
    // where the system can't.
    [[nodiscard]] virtual std::shared_ptr<void> observe(const std::string& name,
                                                        std::function<void()> handler) = 0;
};

// The system's own.
//
// On Linux: sockets in the abstract namespace, so that nothing stays behind after a crash. Their
// names tell the user, the home and the signal; sixteen can observe one signal, in one process or
// in several. Signals of other users are passed over. Processes in different network namespaces
// (containers) don't reach each other.
//
// On macOS: the Darwin notification centre, whose calls come while the main run loop runs.
std::unique_ptr<NamedSignals> makeSystemNamedSignals();

}  // namespace single_instance
