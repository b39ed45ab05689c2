#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <map>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "QtContentWindow.h"

namespace tarnbeck {
namespace {

namespace SettingsWindowFactory = settings_window::SettingsWindowFactory;

class NumbersByHand : public UserDefaults {
  public:
    std::optional<bool> boolean(std::string_view) const override { return std::nullopt; }
    std::optional<double> number(std::string_view key) const override {
        const auto found = numbers.find(std::string(key));
        if (found == numbers.end()) return std::nullopt;
        return found->second;
    }
    std::optional<std::string> data(std::string_view) const override { return std::nullopt; }
    void setBoolean(std::string_view, bool) override {}
    void setNumber(std::string_view key, double value) override {
        numbers[std::string(key)] = value;
    }
    void setData(std::string_view, std::string_view) override {}

    std::map<std::string, double> numbers;
};

class Delegate : public settings_window::WindowDelegate {
  public:
    void windowWillClose() override { ++closings; }
    int closings = 0;
};

class QtContentWindow : public ::testing::Test {
  protected:
    std::shared_ptr<settings_window::Window> make() {
        auto content = std::make_unique<QWindow>();
        shown = content.get();
        return SettingsWindowFactory::makeWindow(
            {.size = {500, 400},
             .title = "Größe",
             .styleMask = {.titled = true, .closable = true},
             .contentViewController =
                 std::make_shared<QtWindowContent>(std::move(content), QSize(300, 200)),
             .autosaveName = "Name",
             .delegate = &delegate},
            platform);
    }
    static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    NumbersByHand defaults;
    QtWindowPlatform platform{defaults};
    Delegate delegate;
    QPointer<QWindow> shown;
};

TEST_F(QtContentWindow, BearsItsTitleSizeAndLimit) {
    const auto window = make();
    EXPECT_EQ(shown->title(), QStringLiteral("Größe"));
    EXPECT_EQ(shown->size(), QSize(500, 400));
    EXPECT_EQ(shown->minimumSize(), QSize(300, 200));
    EXPECT_FALSE(shown->isVisible());
}

TEST_F(QtContentWindow, StandsInTheMiddleAtFirst) {
    const auto window = make();
    const QPoint middle = QRect(shown->framePosition(), shown->size()).center();
    EXPECT_NEAR(middle.x(), screen().center().x(), 2);
    EXPECT_NEAR(middle.y(), screen().center().y(), 2);
}

TEST_F(QtContentWindow, IsShownWhenItIsPresented) {
    const auto window = make();
    SettingsWindowFactory::present(*window, platform);
    EXPECT_TRUE(shown->isVisible());
}

TEST_F(QtContentWindow, ComesBackOutOfThePanel) {
    const auto window = make();
    SettingsWindowFactory::present(*window, platform);
    shown->showMinimized();
    ASSERT_EQ(shown->windowStates(), Qt::WindowMinimized);
    SettingsWindowFactory::present(*window, platform);
    EXPECT_EQ(shown->windowStates(), Qt::WindowNoState);
}

TEST_F(QtContentWindow, TellsItsDelegateThatItCloses) {
    const auto window = make();
    SettingsWindowFactory::present(*window, platform);
    shown->close();
    EXPECT_EQ(delegate.closings, 1);
}

TEST_F(QtContentWindow, TakesItsContentWithIt) {
    auto window = make();
    window.reset();
    EXPECT_TRUE(shown.isNull());
}

TEST_F(QtContentWindow, StandsAgainWhereItWasClosed) {
    auto window = make();
    SettingsWindowFactory::present(*window, platform);
    shown->resize(600, 450);
    shown->setFramePosition(screen().topLeft() + QPoint(40, 30));
    QCoreApplication::processEvents();
    shown->close();
    window = make();
    EXPECT_EQ(shown->size(), QSize(600, 450));
    EXPECT_EQ(shown->framePosition(), screen().topLeft() + QPoint(40, 30));
}

TEST_F(QtContentWindow, ComesBackToAScreenThatHasBecomeSmaller) {
    defaults.numbers = {
        {"Name.width", 500}, {"Name.height", 400}, {"Name.x", 9000}, {"Name.topY", 9000}};
    const auto window = make();
    EXPECT_TRUE(screen().contains(QRect(shown->framePosition(), shown->size())));
}

TEST_F(QtContentWindow, IsNeverSmallerThanItsLimit) {
    defaults.numbers = {{"Name.width", 10}, {"Name.height", 10}};
    const auto window = make();
    EXPECT_EQ(shown->size(), QSize(300, 200));
}

}  // namespace
}  // namespace tarnbeck
