#include "MenuBarIconRenderer.h"

#include <algorithm>
#include <cmath>

namespace tarnbeck {
namespace {

using Command = VectorImage::Command;
using Color = VectorImage::Color;
using Point = VectorImage::Point;
using Rect = VectorImage::Rect;
using TextRun = VectorImage::TextRun;
using MenuBarIconRenderer::CountLine;

constexpr double smallestHeight = 18;
constexpr double glyphSide = 18;
constexpr double columnGap = 3;
constexpr double columnSlack = 2;  // so that rounding never cuts a letter
constexpr double valueSize = 9.0;
constexpr double markerSize = 6.3;
constexpr double markerAlpha = 0.62;
constexpr double strokeWidth = 1.7;
constexpr double dotDiameter = 4.4;
constexpr double dotRadius = dotDiameter / 2;

CountLine countLine(std::int64_t count, const char* marker) {
    return {.valueText = std::to_string(std::max<std::int64_t>(count, 0)), .marker = marker};
}

TextRun valueRun(const CountLine& line, Ink ink) {
    return {.text = line.valueText, .size = valueSize, .color = {.ink = ink}};
}

TextRun markerRun(const CountLine& line, Ink ink) {
    return {
        .text = " " + line.marker, .size = markerSize, .color = {.ink = ink, .alpha = markerAlpha}};
}

Command dot(Point centre, Color color) {
    return VectorImage::FilledOval{
        .in = {centre.x - dotRadius, centre.y - dotRadius, dotDiameter, dotDiameter},
        .color = color};
}

struct CountLineDrawing {
    Rect in;
    Ink ink;
};

Command drawCountLine(const CountLine& line, const CountLineDrawing& drawing,
                      const TextMeasurement& measure) {
    std::vector<TextRun> runs = {valueRun(line, drawing.ink), markerRun(line, drawing.ink)};
    const double height = measure(runs, drawing.in.width).height;
    const double top = drawing.in.y + std::round((drawing.in.height - height) * 0.5);
    return VectorImage::Text{
        .in = {drawing.in.x, top, drawing.in.width, std::ceil(height)},
        .runs = std::move(runs),
    };
}

}  // namespace

std::vector<CountLine> MenuBarIconRenderer::buildCountLines(
    std::int64_t gitBadgeCount, std::optional<std::int64_t> runnerBusyCount) {
    if (runnerBusyCount) return {countLine(*runnerBusyCount, "R"), countLine(gitBadgeCount, "G")};
    if (gitBadgeCount > 0) return {countLine(gitBadgeCount, "G")};
    return {};
}

double MenuBarIconRenderer::countColumnWidth(const std::vector<CountLine>& lines,
                                             const TextMeasurement& measure) {
    constexpr double unlimited = 1e6;
    double widest = 0;
    for (const CountLine& line : lines) {
        const double value = measure({valueRun(line, Ink::black)}, unlimited).width;
        const double marker = measure({markerRun(line, Ink::black)}, unlimited).width;
        widest = std::max(widest, std::ceil(value + marker));
    }
    return widest;
}

std::vector<Command> MenuBarIconRenderer::drawBranch(const Rect& in, const BranchColors& colors) {
    const auto at = [&](double x, double y) { return Point{in.x + x, in.y + y}; };
    const double w = in.width;
    const double h = in.height;
    const double stemX = w * 0.38;
    const double joinY = h * 0.48;
    return {
        VectorImage::Line{.from = at(stemX, h * 0.1 + dotRadius),
                          .to = at(stemX, h * 0.9 - dotRadius),
                          .width = strokeWidth,
                          .color = colors.ink},
        VectorImage::Curve{.from = at(stemX, joinY),
                           .firstControl = at(stemX + w * 0.12, joinY),
                           .secondControl = at(w * 0.78, joinY - w * 0.05),
                           .to = at(w * 0.78, h * 0.22 + dotRadius),
                           .width = strokeWidth,
                           .color = colors.ink},
        dot(at(stemX, h * 0.1), colors.ink),
        dot(at(stemX, h * 0.9), colors.lowerDot),
        dot(at(stemX, joinY), colors.ink),
        dot(at(w * 0.78, h * 0.22), colors.ink),
    };
}

VectorImage MenuBarIconRenderer::render(const MenuBarIconRenderState& state,
                                        const MenuBar& menuBar) {
    const double height = std::max(std::ceil(menuBar.thickness), smallestHeight);
    const auto lines = buildCountLines(state.gitBadgeCount, state.runnerBusyCount);
    const double column = countColumnWidth(lines, menuBar.measure);
    const Ink ink = state.awakeActive ? Ink::label : Ink::black;
    const double glyphTop = std::round((height - glyphSide) * 0.5) + 0.5;
    VectorImage image{
        .width = lines.empty() ? glyphSide : column + columnGap + glyphSide,
        .height = height,
        .isTemplate = !state.awakeActive,
        .commands = drawBranch(
            {0, glyphTop, glyphSide, glyphSide},
            {.ink = {.ink = ink}, .lowerDot = {.ink = state.awakeActive ? Ink::systemGreen : ink}}),
    };
    const double lineHeight = lines.size() == 2 ? height * 0.5 : height;
    double top = 0;
    for (const CountLine& line : lines) {
        const Rect in{glyphSide + columnGap, top, column + columnSlack, lineHeight};
        image.commands.push_back(drawCountLine(line, {.in = in, .ink = ink}, menuBar.measure));
        top += lineHeight;
    }
    return image;
}

}  // namespace tarnbeck
