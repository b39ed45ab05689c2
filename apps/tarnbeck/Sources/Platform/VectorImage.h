// A small picture as a list of what is drawn, one over the other. Lengths are device-independent
// pixels; y counts downwards. Plain values.
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace tarnbeck {

// The colours that a picture may name; who paints it knows what they look like.
enum class Ink {
    black,        // of a template image: the system tints it
    label,        // the system's colour of text
    systemGreen,  // the system's green
    tile,         // the ground of a tile that must be legible on any panel
    tileEdge,
    tileGlyph,
    tileText,
    tileGreen,
};

struct VectorImage {
    struct Point {
        double x = 0;
        double y = 0;
        bool operator==(const Point&) const = default;
    };
    struct Rect {
        double x = 0;
        double y = 0;
        double width = 0;
        double height = 0;
        bool operator==(const Rect&) const = default;
    };
    struct Color {
        Ink ink = Ink::black;
        double alpha = 1;
        bool operator==(const Color&) const = default;
    };
    // Straight, with round ends.
    struct Line {
        Point from;
        Point to;
        double width = 1;
        Color color;
        bool operator==(const Line&) const = default;
    };
    // Cubic, with round ends.
    struct Curve {
        Point from;
        Point firstControl;
        Point secondControl;
        Point to;
        double width = 1;
        Color color;
        bool operator==(const Curve&) const = default;
    };
    struct FilledOval {
        Rect in;
        Color color;
        bool operator==(const FilledOval&) const = default;
    };
    struct RoundedRect {
        Rect in;
        double radius = 0;
        double width = 0;  // of its outline; 0: filled
        Color color;
        bool operator==(const RoundedRect&) const = default;
    };
    // In the system's font with digits of equal width.
    struct TextRun {
        std::string text;
        double size = 9;
        bool isBold = false;
        Color color;
        bool operator==(const TextRun&) const = default;
    };
    // Runs on one line, on one baseline, from the upper left corner.
    struct Text {
        Rect in;
        std::vector<TextRun> runs;
        bool operator==(const Text&) const = default;
    };
    using Command = std::variant<Line, Curve, FilledOval, RoundedRect, Text>;

    double width = 0;
    double height = 0;
    bool isTemplate = false;  // only its shape counts; the system tints it
    std::vector<Command> commands;

    bool operator==(const VectorImage&) const = default;
};

struct TextSize {
    double width = 0;
    double height = 0;
};

// How large runs of text are when they are drawn on one line within `width`.
using TextMeasurement =
    std::function<TextSize(const std::vector<VectorImage::TextRun>& runs, double width)>;

}  // namespace tarnbeck
