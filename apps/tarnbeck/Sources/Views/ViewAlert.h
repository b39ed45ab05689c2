// A question or a message inside a window, which must be answered before anything else. The first
// button that cancels has the focus, and is what Escape answers; where none cancels, the only one.
#pragma once

#include <string>
#include <vector>

namespace tarnbeck {

struct ViewAlert {
    enum class Role { plain, destructive, cancel };
    struct Button {
        std::string title;
        Role role = Role::plain;
        bool operator==(const Button&) const = default;
    };

    std::string title;
    std::string message;
    std::vector<Button> buttons;  // from left to right

    bool operator==(const ViewAlert&) const = default;
};

}  // namespace tarnbeck
