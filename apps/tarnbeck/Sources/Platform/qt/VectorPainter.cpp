#include "VectorPainter.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>

#include "Overloaded.h"

namespace tarnbeck {
namespace {

constexpr double pointsPerInch = 72;
constexpr int imageDotsPerInch = 96;

// Open Sans, where it is there, has digits of equal width; so has what macOS takes.
QFont fontOf(const VectorImage::TextRun& run, double scale) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (QFontDatabase::hasFamily(QStringLiteral("Open Sans"))) {
        font.setFamily(QStringLiteral("Open Sans"));
    }
    font.setPointSizeF(run.size * scale * pointsPerInch / imageDotsPerInch);
    font.setWeight(run.isBold ? QFont::Bold : QFont::Normal);
    return font;
}

// All text is laid out on this, so that a size means the same on every screen.
const QImage& referenceDevice() {
    static const QImage device = [] {
        QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.setDotsPerMeterX(qRound(imageDotsPerInch / 0.0254));
        image.setDotsPerMeterY(qRound(imageDotsPerInch / 0.0254));
        return image;
    }();
    return device;
}

QFontMetricsF metricsOf(const QFont& font) {
    return {font, const_cast<QImage*>(&referenceDevice())};
}

QString textOf(const VectorImage::TextRun& run) {
    return QString::fromStdString(run.text);
}

QPointF point(const VectorImage::Point& at) {
    return {at.x, at.y};
}

QRectF rect(const VectorImage::Rect& in) {
    return {in.x, in.y, in.width, in.height};
}

QPen roundPen(const VectorImage::Color& color, double width) {
    return {QBrush(colorOf(color)), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

class CommandPainter {
  public:
    CommandPainter(QPainter& painter, double scale) : painter_(painter), scale_(scale) {}

    void operator()(const VectorImage::Line& line) const {
        painter_.setPen(roundPen(line.color, line.width));
        painter_.drawLine(point(line.from), point(line.to));
    }
    void operator()(const VectorImage::Curve& curve) const {
        QPainterPath path(point(curve.from));
        path.cubicTo(point(curve.firstControl), point(curve.secondControl), point(curve.to));
        painter_.strokePath(path, roundPen(curve.color, curve.width));
    }
    void operator()(const VectorImage::FilledOval& oval) const {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(colorOf(oval.color));
        painter_.drawEllipse(rect(oval.in));
    }
    void operator()(const VectorImage::RoundedRect& rounded) const {
        const bool isFilled = rounded.width == 0;
        painter_.setPen(isFilled ? QPen(Qt::NoPen) : roundPen(rounded.color, rounded.width));
        painter_.setBrush(isFilled ? QBrush(colorOf(rounded.color)) : QBrush(Qt::NoBrush));
        painter_.drawRoundedRect(rect(rounded.in), rounded.radius, rounded.radius);
    }
    // In the pixels that will be seen, so that small letters keep their shape.
    void operator()(const VectorImage::Text& text) const {
        double ascent = 0;
        for (const auto& run : text.runs) {
            ascent = std::max(ascent, metricsOf(fontOf(run, scale_)).ascent());
        }
        painter_.save();
        painter_.scale(1 / scale_, 1 / scale_);
        QPointF at(text.in.x * scale_, text.in.y * scale_ + ascent);
        for (const auto& run : text.runs) {
            QFont font = fontOf(run, scale_);
            const double advance = metricsOf(font).horizontalAdvance(textOf(run));
            font.setPointSizeF(run.size * scale_ * pointsPerInch /
                               painter_.device()->logicalDpiY());
            painter_.setFont(font);
            painter_.setPen(colorOf(run.color));
            painter_.drawText(at, textOf(run));
            at.rx() += advance;
        }
        painter_.restore();
    }

  private:
    QPainter& painter_;
    double scale_;
};

}  // namespace

QColor colorOf(const VectorImage::Color& color) {
    const auto opaque = [&] {
        switch (color.ink) {
            case Ink::black:
                return QColor(Qt::black);
            case Ink::label:
                return QGuiApplication::palette().color(QPalette::WindowText);
            case Ink::systemGreen:
                return QColor(0x28, 0xCD, 0x41);
            case Ink::tile:
                return QColor(0x1B, 0x21, 0x28);
            case Ink::tileEdge:
                return QColor(Qt::white);
            case Ink::tileGlyph:
                return QColor(0xB0, 0xB9, 0xC4);
            case Ink::tileText:
                return QColor(Qt::white);
            case Ink::tileGreen:
                return QColor(0x63, 0xD2, 0x97);
        }
        return QColor();
    };
    QColor result = opaque();
    result.setAlphaF(static_cast<float>(color.alpha));
    return result;
}

void paint(const VectorImage& image, QPainter& painter, const QRectF& target) {
    const double scale = target.height() / image.height;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(target.topLeft());
    painter.scale(scale, scale);
    for (const auto& command : image.commands) std::visit(CommandPainter(painter, scale), command);
    painter.restore();
}

QImage painted(const VectorImage& image, int pixels) {
    const double scale = pixels / image.height;
    QImage result(qRound(image.width * scale), pixels, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(image, painter, QRectF(0, 0, image.width * scale, pixels));
    return result;
}

TextMeasurement statusTextMeasurement() {
    return [](const std::vector<VectorImage::TextRun>& runs, double) {
        TextSize size;
        for (const auto& run : runs) {
            const QFontMetricsF metrics = metricsOf(fontOf(run, 1));
            size.width += metrics.horizontalAdvance(textOf(run));
            size.height = std::max(size.height, metrics.height());
        }
        return size;
    };
}

}  // namespace tarnbeck
