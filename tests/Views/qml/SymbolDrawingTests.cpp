// What is drawn in `Views/qml/symbols`, at the sizes in which it is used.
#include <QImage>
#include <QSize>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Symbol.h"
#include "SymbolMask.h"

namespace tarnbeck {
namespace {

constexpr std::array sides{12, 16, 24};

QImage drawn(std::string_view name, int side) {
    return drawnSymbolMask(QString::fromStdString(std::string(name)), QSize(side, side));
}

// The opacities of all pixels, 0 to 255, row by row.
std::vector<int> opacities(const QImage& image) {
    std::vector<int> result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) result.push_back(qAlpha(image.pixel(x, y)));
    }
    return result;
}

bool isInk(const QImage& image, int x, int y) {
    return qAlpha(image.pixel(x, y)) >= 128;
}

// Pixels without ink that no way over such pixels leads to from the border.
int enclosedPixels(const QImage& image) {
    std::set<std::pair<int, int>> outside;
    std::deque<std::pair<int, int>> toVisit{{0, 0}};
    while (!toVisit.empty()) {
        const auto [x, y] = toVisit.front();
        toVisit.pop_front();
        if (!image.rect().contains(x, y) || isInk(image, x, y)) continue;
        if (!outside.emplace(x, y).second) continue;
        for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
            toVisit.emplace_back(x + dx, y + dy);
        }
    }
    int enclosed = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            enclosed += !isInk(image, x, y) && !outside.contains({x, y});
        }
    }
    return enclosed;
}

// How far two pictures are apart: whole pixels of ink that only one of them has.
double differenceInPixels(const std::vector<int>& left, const std::vector<int>& right) {
    int sum = 0;
    for (std::size_t i = 0; i < left.size(); ++i) sum += std::abs(left[i] - right[i]);
    return sum / 255.0;
}

TEST(SymbolDrawings, AreThoseThatLogicMayName) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(SYMBOLS)) {
        if (entry.path().extension() == ".svg") files.insert(entry.path().stem().string());
    }
    files.erase("tarnbeck");  // the application's own icon
    EXPECT_EQ(files, (std::set<std::string>(symbolNames.begin(), symbolNames.end())));
}

TEST(SymbolDrawings, NamesAreSortedAndUnique) {
    EXPECT_TRUE(std::ranges::is_sorted(symbolNames));
    EXPECT_EQ(std::ranges::adjacent_find(symbolNames), symbolNames.end());
}

TEST(SymbolDrawings, ShowSomethingAtEverySize) {
    for (const std::string_view name : symbolNames) {
        for (const int side : sides) {
            const QImage image = drawn(name, side);
            ASSERT_EQ(image.size(), QSize(side, side)) << name;
            const auto pixels = opacities(image);
            EXPECT_GE(std::ranges::count_if(pixels, [](int ink) { return ink > 128; }),
                      side * 2 / 3)
                << name << " at " << side;
        }
    }
}

TEST(SymbolDrawings, AreDrawnInBlackAlone) {
    for (const std::string_view name : symbolNames) {
        const QImage image = drawn(name, 24).convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(image.pixel(x, y)) == 0) continue;
                ASSERT_EQ(image.pixel(x, y) & 0xFFFFFFU, 0U) << name;
            }
        }
    }
}

// White ink in the place of a hole would become ink like all other when it is coloured.
TEST(SymbolDrawings, FilledOnesHaveAHoleThatShowsTheGround) {
    for (const std::string_view name : symbolNames) {
        if (!name.ends_with(".fill") || name == "circle.fill") continue;
        for (const int side : sides) {
            EXPECT_GE(enclosedPixels(drawn(name, side)), side / 6) << name << " at " << side;
        }
    }
}

TEST(SymbolDrawings, AFilledCircleHasNoHole) {
    EXPECT_EQ(enclosedPixels(drawn("circle.fill", 24)), 0);
}

TEST(SymbolDrawings, TouchNoEdgeOfTheirPicture) {
    for (const std::string_view name : symbolNames) {
        const QImage image = drawn(name, 24);
        for (int i = 0; i < 24; ++i) {
            EXPECT_EQ(qAlpha(image.pixel(i, 0)) + qAlpha(image.pixel(i, 23)) +
                          qAlpha(image.pixel(0, i)) + qAlpha(image.pixel(23, i)),
                      0)
                << name;
        }
    }
}

TEST(SymbolDrawings, NoTwoLookAlikeAtTwelvePixels) {
    std::vector<std::vector<int>> pictures;
    for (const std::string_view name : symbolNames) pictures.push_back(opacities(drawn(name, 12)));
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_GE(differenceInPixels(pictures[i], pictures[j]), 4)
                << symbolNames.at(i) << " and " << symbolNames.at(j);
        }
    }
}

// These say by their shape alone what is wrong with a repository.
TEST(SymbolDrawings, ThoseOfAStatusAreFarApartAtTwelvePixels) {
    const std::array<std::string_view, 6> status{
        "exclamationmark.octagon.fill",  "pencil.circle.fill",
        "arrow.up.circle.fill",          "arrow.down.circle.fill",
        "exclamationmark.triangle.fill", "arrow.left.arrow.right.circle.fill"};
    for (const auto left : status) {
        for (const auto right : status) {
            if (left == right) continue;
            EXPECT_GE(differenceInPixels(opacities(drawn(left, 12)), opacities(drawn(right, 12))),
                      9)
                << left << " and " << right;
        }
    }
}

// A stroke between two rows of pixels would be two rows of grey.
TEST(SymbolDrawings, AStrokeInTheMiddleFillsWholePixels) {
    for (const int side : sides) {
        const QImage arrow = drawn("arrow.up", side);
        int strongest = 0;
        for (int x = 0; x < side; ++x) {
            strongest = std::max(strongest, qAlpha(arrow.pixel(x, side * 3 / 4)));
        }
        EXPECT_GE(strongest, 216) << side;
    }
}

TEST(SymbolDrawings, TheUprightOfAnArrowIsTheSameOnBothSides) {
    for (const int side : {24, 32, 48}) {
        const QImage arrow = drawn("arrow.up", side);
        EXPECT_LT(differenceInPixels(opacities(arrow), opacities(arrow.mirrored(true, false))), 1)
            << side;
    }
}

TEST(SymbolDrawings, AnUnknownNameGivesNone) {
    EXPECT_TRUE(drawn("tarnbeck", 24).isNull());
    EXPECT_TRUE(drawn("../symbols/tag", 24).isNull());
    EXPECT_TRUE(drawn("", 24).isNull());
}

TEST(SymbolDrawings, StandInTheMiddleOfAPictureThatIsNotSquare) {
    const QImage wide = drawnSymbolMask("circle.fill", QSize(48, 24));
    EXPECT_EQ(wide.copy(12, 0, 24, 24), drawn("circle.fill", 24));
}

}  // namespace
}  // namespace tarnbeck
