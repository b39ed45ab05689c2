// Symbols in a colour, as QML asks for them.
#include <QImage>
#include <QSize>
#include <QString>
#include <QtGlobal>
#include <string>
#include <thread>
#include <vector>

#include "SymbolProvider.h"

namespace tarnbeck {
namespace {

std::vector<std::string>& warnings() {
    static std::vector<std::string> lines;
    return lines;
}

class SymbolProviders : public ::testing::Test {
  protected:
    SymbolProviders() {
        warnings().clear();
        before_ = qInstallMessageHandler(
            [](QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
                warnings().push_back(text.toStdString());
            });
    }
    ~SymbolProviders() override { qInstallMessageHandler(before_); }

    QImage image(const QString& id, QSize requested = {24, 24}) {
        return provider_.requestImage(id, &size_, requested);
    }

    SymbolProvider provider_;
    QSize size_;

  private:
    QtMessageHandler before_ = nullptr;
};

// The colours of all pixels on which something is drawn, as far as rounding lets one see them.
bool hasOnlyColor(const QImage& image, QRgb color) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb pixel = plain.pixel(x, y);
            if (qAlpha(pixel) == 255 && pixel != color) return false;
        }
    }
    return true;
}

QRgb middleOf(const QImage& image) {
    return image.convertToFormat(QImage::Format_ARGB32)
        .pixel(image.width() / 2, image.height() / 2);
}

bool isEmpty(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) return false;
        }
    }
    return true;
}

TEST_F(SymbolProviders, PaintInTheColourThatIsAskedFor) {
    const QImage symbol = image("circle.fill/ff857c");
    EXPECT_EQ(middleOf(symbol), 0xFFFF857CU);
    EXPECT_TRUE(hasOnlyColor(symbol, 0xFFFF857CU));
}

TEST_F(SymbolProviders, TakeAColourThatLetsTheGroundThrough) {
    EXPECT_EQ(middleOf(image("circle.fill/80ffffff")), 0x80FFFFFFU);
}

TEST_F(SymbolProviders, GiveTheSizeThatIsAskedForInDevicePixels) {
    EXPECT_EQ(image("tag/ffffff", {36, 36}).size(), QSize(36, 36));
    EXPECT_EQ(size_, QSize(36, 36));
}

TEST_F(SymbolProviders, GiveTwentyFourPixelsWhereNoSizeIsAskedFor) {
    EXPECT_EQ(image("tag/ffffff", {}).size(), QSize(24, 24));
}

TEST_F(SymbolProviders, TakeOneSideForTheOther) {
    EXPECT_EQ(image("tag/ffffff", {16, 0}).size(), QSize(16, 16));
}

TEST_F(SymbolProviders, DoNotFillTheMemoryForAnAbsurdSize) {
    EXPECT_EQ(image("tag/ffffff", {100000, 16}).size(), QSize(2048, 16));
}

TEST_F(SymbolProviders, KeepApartWhatDiffersInColourOrSize) {
    const QImage white = image("tag/ffffff");
    EXPECT_NE(image("tag/000000"), white);
    EXPECT_NE(image("tag/ffffff", {12, 12}).size(), white.size());
    EXPECT_EQ(image("tag/ffffff"), white);
}

TEST_F(SymbolProviders, KeepWhatTheyPainted) {
    const QImage first = image("tag/ffffff");
    EXPECT_EQ(image("tag/ffffff").constBits(), first.constBits());
}

TEST_F(SymbolProviders, GiveAnEmptyPictureForAnUnknownName) {
    const QImage unknown = image("no.such.symbol/ffffff");
    EXPECT_EQ(unknown.size(), QSize(24, 24));
    EXPECT_TRUE(isEmpty(unknown));
}

TEST_F(SymbolProviders, WarnOnceOfAnUnknownName) {
    image("no.such.symbol/ffffff");
    image("no.such.symbol/ffffff", {12, 12});
    EXPECT_EQ(warnings(), std::vector<std::string>{"No symbol in a colour: no.such.symbol/ffffff"});
}

TEST_F(SymbolProviders, GiveAnEmptyPictureForAnUnknownColour) {
    for (const char* id : {"tag", "tag/", "tag/fff", "tag/gggggg", "tag/ffffff/ffffff"}) {
        EXPECT_TRUE(isEmpty(image(id))) << id;
    }
    EXPECT_EQ(warnings().size(), 5U);
}

TEST_F(SymbolProviders, AnswerSeveralThreadsAtOnce) {
    std::vector<QImage> answers(4);
    {
        std::vector<std::jthread> threads;
        for (QImage& answer : answers) {
            threads.emplace_back([this, &answer] {
                for (int side = 10; side < 40; ++side) {
                    answer = provider_.requestImage("gearshape/67d3d6", nullptr, {side, side});
                }
            });
        }
    }
    for (const QImage& answer : answers) EXPECT_EQ(answer, image("gearshape/67d3d6", {39, 39}));
}

}  // namespace
}  // namespace tarnbeck
