// A short word at the bottom of the window that goes by itself.
#pragma once

#include <cstdint>
#include <string>

namespace tarnbeck {

struct AppToast {
    std::string message;
    bool isVisible = false;
    std::uint64_t token = 0;  // a new one for each showing, also of the same message

    // "app-toast-" and the message: a new message counts as a new toast.
    std::string identity() const { return "app-toast-" + message; }

    bool operator==(const AppToast&) const = default;
};

}  // namespace tarnbeck
