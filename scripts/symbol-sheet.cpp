// Draws every symbol at the sizes in which it is used, on dark and on light ground, on one picture:
// what is to be looked at whenever one of them is drawn anew. `symbol-sheet FILE.png`
#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <array>
#include <cstdio>
#include <string_view>

#include "Symbol.h"
#include "SymbolMask.h"

namespace {

constexpr int columns = 4;
constexpr int cellWidth = 292;
constexpr int cellHeight = 84;
constexpr int margin = 32;
constexpr int headHeight = 64;

constexpr int rows = (static_cast<int>(tarnbeck::symbolNames.size()) + columns - 1) / columns;
constexpr int panelWidth = columns * cellWidth + 2 * margin;
constexpr int panelHeight = headHeight + rows * cellHeight + margin;

struct Panel {
    const char* title;
    QColor ground;
    QColor ink;
    QColor secondary;
};

// Device pixels: 12, 16 and 24 as on an ordinary screen, then as on one of twice the density.
constexpr std::array sides{12, 16, 24, 24, 32, 48};

QImage inked(const QString& name, int side, const QColor& ink) {
    QImage image = tarnbeck::drawnSymbolMask(name, QSize(side, side));
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), ink);
    return image;
}

QFont font(int pixels, QFont::Weight weight = QFont::Normal) {
    QFont result("Open Sans");
    result.setPixelSize(pixels);
    result.setWeight(weight);
    return result;
}

void drawCell(QPainter& painter, const Panel& panel, const QString& name, QPoint corner) {
    int x = corner.x();
    for (const int side : sides) {
        painter.drawImage(QPoint(x, corner.y() + 24 - side / 2), inked(name, side, panel.ink));
        x += side + 14;
    }
    painter.setFont(font(11));
    painter.setPen(panel.secondary);
    painter.drawText(QPoint(corner.x(), corner.y() + 62),
                     QFontMetrics(painter.font()).elidedText(name, Qt::ElideRight, cellWidth - 16));
}

void drawPanel(QPainter& painter, const Panel& panel, int top) {
    painter.fillRect(0, top, panelWidth, panelHeight, panel.ground);
    painter.setFont(font(15, QFont::DemiBold));
    painter.setPen(panel.ink);
    painter.drawText(QPoint(margin, top + 40), panel.title);
    for (int index = 0; index < static_cast<int>(tarnbeck::symbolNames.size()); ++index) {
        const std::string_view name = tarnbeck::symbolNames.at(static_cast<std::size_t>(index));
        drawCell(painter, panel, QString::fromUtf8(name.data(), static_cast<int>(name.size())),
                 {margin + index % columns * cellWidth,
                  top + headHeight + index / columns * cellHeight});
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: symbol-sheet FILE.png\n", stderr);
        return 2;
    }
    QImage sheet(panelWidth, 2 * panelHeight, QImage::Format_RGB32);
    QPainter painter(&sheet);
    drawPanel(painter, {"On dark ground", 0x1A2129, 0xE8ECF1, 0xB0B9C4}, 0);
    drawPanel(painter, {"On light ground", 0xF7F9FA, 0x14191F, 0x48525D}, panelHeight);
    painter.end();
    return sheet.save(argv[1], "PNG", 0) ? 0 : 1;
}
