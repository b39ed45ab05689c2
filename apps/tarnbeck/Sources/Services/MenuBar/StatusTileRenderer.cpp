#include "StatusTileRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

#include "MenuBarIconRenderer.h"

namespace tarnbeck {
namespace {

using Command = VectorImage::Command;
using Rect = VectorImage::Rect;

constexpr double tileRadius = 5;
constexpr double edgeAlpha = 0.22;
constexpr double badgeSize = 12;
constexpr double badgeRight = 20;
constexpr double badgeBottom = 21.5;
constexpr double branchSide = 18;
constexpr Rect glyphAlone{2, 2, branchSide, branchSide};
constexpr Rect glyphBesideBadge{-1.5, 1.2, 13, 13};
constexpr Rect awakeDotAlone{14, 14, 5.5, 5.5};
constexpr Rect awakeDotAboveBadge{14, 2.5, 5.5, 5.5};
constexpr std::int64_t highestCount = 99;

// A branch made smaller as a whole, its strokes and dots too.
class Shrinking {
  public:
    explicit Shrinking(const Rect& target) : target_(target), factor_(target.width / branchSide) {}

    Command operator()(const VectorImage::Line& line) const {
        return VectorImage::Line{at(line.from), at(line.to), line.width * factor_, line.color};
    }
    Command operator()(const VectorImage::Curve& curve) const {
        return VectorImage::Curve{at(curve.from), at(curve.firstControl), at(curve.secondControl),
                                  at(curve.to),   curve.width * factor_,  curve.color};
    }
    Command operator()(const VectorImage::FilledOval& oval) const {
        const VectorImage::Point corner = at({oval.in.x, oval.in.y});
        return VectorImage::FilledOval{
            {corner.x, corner.y, oval.in.width * factor_, oval.in.height * factor_}, oval.color};
    }
    // What a branch is not made of.
    Command operator()(const VectorImage::RoundedRect& other) const { return other; }
    Command operator()(const VectorImage::Text& other) const { return other; }

  private:
    VectorImage::Point at(const VectorImage::Point& point) const {
        return {target_.x + point.x * factor_, target_.y + point.y * factor_};
    }

    Rect target_;
    double factor_;
};

std::vector<Command> branchIn(const Rect& target) {
    const VectorImage::Color ink{.ink = Ink::tileGlyph};
    std::vector<Command> commands = MenuBarIconRenderer::drawBranch({0, 0, branchSide, branchSide},
                                                                    {.ink = ink, .lowerDot = ink});
    for (Command& command : commands) command = std::visit(Shrinking(target), command);
    return commands;
}

Command badge(const std::string& text, const TextMeasurement& measure) {
    std::vector<VectorImage::TextRun> runs = {
        {.text = text, .size = badgeSize, .isBold = true, .color = {.ink = Ink::tileText}}};
    const TextSize size = measure(runs, StatusTileRenderer::side);
    const Rect in{std::round(badgeRight - size.width), std::round(badgeBottom - size.height),
                  size.width, size.height};
    return VectorImage::Text{.in = in, .runs = std::move(runs)};
}

std::string counted(std::int64_t count, const char* one, const char* many) {
    return std::to_string(count) + (count == 1 ? one : many);
}

}  // namespace

std::string StatusTileRenderer::badgeText(const MenuBarIconRenderState& state) {
    if (state.gitBadgeCount <= 0) return "";
    return state.gitBadgeCount > highestCount ? "+" : std::to_string(state.gitBadgeCount);
}

std::string StatusTileRenderer::toolTip(const MenuBarIconRenderState& state) {
    std::string text = "Tarnbeck";
    if (state.gitBadgeCount > 0) {
        text += " · " + counted(state.gitBadgeCount, " dirty repo", " dirty repos");
    }
    if (state.runnerBusyCount) {
        const std::int64_t busy = std::max<std::int64_t>(*state.runnerBusyCount, 0);
        text += " · " + counted(busy, " busy runner", " busy runners");
    }
    if (state.awakeActive) text += " · awake";
    return text;
}

VectorImage StatusTileRenderer::render(const MenuBarIconRenderState& state,
                                       const TextMeasurement& measure) {
    const std::string text = badgeText(state);
    VectorImage image{.width = side, .height = side};
    image.commands = {
        VectorImage::RoundedRect{
            .in = {0, 0, side, side}, .radius = tileRadius, .color = {.ink = Ink::tile}},
        VectorImage::RoundedRect{.in = {0.5, 0.5, side - 1, side - 1},
                                 .radius = tileRadius - 0.5,
                                 .width = 1,
                                 .color = {.ink = Ink::tileEdge, .alpha = edgeAlpha}},
    };
    const auto glyph = branchIn(text.empty() ? glyphAlone : glyphBesideBadge);
    image.commands.insert(image.commands.end(), glyph.begin(), glyph.end());
    if (!text.empty()) image.commands.push_back(badge(text, measure));
    if (state.awakeActive) {
        image.commands.push_back(
            VectorImage::FilledOval{.in = text.empty() ? awakeDotAlone : awakeDotAboveBadge,
                                    .color = {.ink = Ink::tileGreen}});
    }
    return image;
}

}  // namespace tarnbeck
