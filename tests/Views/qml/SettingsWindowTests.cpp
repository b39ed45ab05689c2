#include <QCoreApplication>
#include <QQuickWindow>

#include "PageHarness.h"
#include "SettingsFixture.h"

namespace tarnbeck::testing {
namespace {

class SettingsWindow_End : public SettingsFixture {
  protected:
    // The window that shows the settings, and owns them.
    std::unique_ptr<QQuickWindow> open() {
        QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
        make().selectPane(SettingsPane::display);
        observation = {};
        shown = view.get();
        auto window = windows.settingsWindow(std::move(view));
        window->resize(920, 620);
        window->show();
        window->grabWindow();
        return window;
    }

    SettingsView* shown = nullptr;
    ViewWindows windows;
};

TEST_F(SettingsWindow_End, KeepsWhatASliderHasJustSet) {
    auto window = open();
    shown->setValue(id(SettingsControl::appBackdropOpacity), 0.5);
    ASSERT_THAT(saved(), ::testing::IsEmpty());
    window.reset();
    ASSERT_THAT(saved(), ::testing::SizeIs(1));
    EXPECT_EQ(saved()[0].appBackdropOpacity, 0.5);
}

TEST_F(SettingsWindow_End, LeavesNothingForALoopThatDoesNotRunAnyMore) {
    auto window = open();
    const Complaints complaints;
    window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_THAT(complaints.texts(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace tarnbeck::testing
