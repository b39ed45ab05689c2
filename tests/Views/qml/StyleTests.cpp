#include <QColor>
#include <QMetaObject>
#include <QQmlComponent>
#include <QQmlEngine>
#include <algorithm>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

void qml_register_types_Tarnbeck();

namespace tarnbeck::testing {
namespace {

class Style : public ::testing::TestWithParam<bool> {
  protected:
    Style() {
        qml_register_types_Tarnbeck();
        engine_.addImportPath(QStringLiteral(":/qt/qml"));
        QQmlComponent finder(&engine_);
        finder.setData("import QtQml\nimport Tarnbeck\nQtObject { property QtObject style: Style }",
                       QUrl());
        const std::unique_ptr<QObject> found(finder.create());
        style_ = found->property("style").value<QObject*>();
        style_->setProperty("isDark", GetParam());
    }

    QColor color(const char* name) const { return style_->property(name).value<QColor>(); }
    QColor ground(double opacity) const {
        QVariant result;
        QMetaObject::invokeMethod(style_, "ground", Q_RETURN_ARG(QVariant, result),
                                  Q_ARG(QVariant, opacity));
        return result.value<QColor>();
    }
    static QColor over(const QColor& ground, const QColor& layer) {
        const auto mix = [&](double below, double above) {
            return below + (above - below) * layer.alphaF();
        };
        return QColor::fromRgbF(static_cast<float>(mix(ground.redF(), layer.redF())),
                                static_cast<float>(mix(ground.greenF(), layer.greenF())),
                                static_cast<float>(mix(ground.blueF(), layer.blueF())));
    }

  private:
    QQmlEngine engine_;
    QObject* style_ = nullptr;
};

// As the Web Content Accessibility Guidelines reckon it.
double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

TEST_P(Style, LetsEveryInkBeReadOnEveryGroundAtEveryOpacity) {
    for (int percent = 0; percent <= 100; percent += 5) {
        const QColor window = ground(percent / 100.0);
        const QColor card = over(window, color("card"));
        for (const QColor& under :
             {window, card, over(card, color("hover")), over(window, color("bar"))}) {
            for (const char* ink : {"text", "secondary", "accent", "red", "orange", "yellow",
                                    "green", "blue", "gray"}) {
                EXPECT_GE(contrast(color(ink), under), 4.5)
                    << ink << " on " << under.name().toStdString() << " at " << percent;
            }
        }
    }
}

TEST_P(Style, LetsWhatIsFoundBeReadOnItsHighlight) {
    for (int percent = 0; percent <= 100; percent += 5) {
        const QColor marked =
            over(over(ground(percent / 100.0), color("card")), color("searchHighlight"));
        EXPECT_GE(contrast(color("text"), marked), 4.5) << percent;
        EXPECT_GE(contrast(color("secondary"), marked), 4.5) << percent;
    }
}

INSTANTIATE_TEST_SUITE_P(InBothAppearances, Style, ::testing::Bool());

}  // namespace
}  // namespace tarnbeck::testing
