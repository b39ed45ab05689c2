// The symbols that logic may name. Each is drawn for every size and colour in `Views/qml/symbols`;
// on macOS they are the system's own of that name.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnbeck {

inline constexpr auto symbolNames = std::to_array<std::string_view>({
    "arrow.clockwise",
    "arrow.down",
    "arrow.down.circle.fill",
    "arrow.left.arrow.right.circle.fill",
    "arrow.triangle.2.circlepath",
    "arrow.triangle.2.circlepath.circle.fill",
    "arrow.triangle.branch",
    "arrow.triangle.merge",
    "arrow.up",
    "arrow.up.arrow.down",
    "arrow.up.circle.fill",
    "arrow.uturn.backward.circle",
    "checkmark",
    "checkmark.circle",
    "checkmark.circle.fill",
    "chevron.down",
    "chevron.left",
    "chevron.right",
    "circle",
    "circle.fill",
    "clock",
    "clock.arrow.circlepath",
    "clock.fill",
    "cloud",
    "cup.and.saucer.fill",
    "doc.on.doc",
    "equal",
    "exclamationmark.bubble",
    "exclamationmark.circle",
    "exclamationmark.octagon",
    "exclamationmark.octagon.fill",
    "exclamationmark.triangle",
    "exclamationmark.triangle.fill",
    "folder.badge.gearshape",
    "folder.fill",
    "gearshape",
    "info.circle",
    "line.3.horizontal.decrease.circle.fill",
    "list.bullet",
    "magnifyingglass",
    "minus.circle.fill",
    "number.circle",
    "pencil.circle.fill",
    "point.3.connected.trianglepath.dotted",
    "questionmark.circle.fill",
    "rectangle.split.3x1",
    "server.rack",
    "shippingbox",
    "slider.horizontal.3",
    "square.and.arrow.down",
    "tag",
    "textformat.abc",
    "tray.full",
    "xmark.circle",
    "xmark.circle.fill",
});

constexpr bool isSymbol(std::string_view name) {
    return std::ranges::find(symbolNames, name) != symbolNames.end();
}

}  // namespace tarnbeck
