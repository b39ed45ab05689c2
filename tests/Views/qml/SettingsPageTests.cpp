#include <memory>
#include <utility>

#include "PageHarness.h"
#include "SettingsView.h"

namespace tarnbeck::testing {
namespace {

class SettingsPage : public ::testing::Test {
  protected:
    SettingsPage() {
        scanners_.options.configuration.repoPaths = {"~/one", "/tmp/\xff"};
        scanners_.make();
        auto view = std::make_unique<SettingsView>(
            SettingsView::Services{.scanner = *scanners_.scanner,
                                   .loop = scanners_.simulation.loop,
                                   .queues = scanners_.simulation.queues,
                                   .home = scanners_.folder.path(),
                                   .dismiss = [this] { ++dismissed_; }});
        window_ = windows_.settingsWindow(std::move(view));
        window_->resize(840, 560);
        window_->show();
        window_->requestActivate();
        settle();
    }

    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            scanners_.simulation.runUntilIdle();
            QCoreApplication::processEvents();
            window_->grabWindow();
        }
    }
    void key(Qt::Key key) {
        QTest::keyClick(window_.get(), key);
        settle();
    }
    QQuickItem* named(const QString& name) const { return find(window_->contentItem(), name); }
    void press(const QString& name) {
        QQuickItem* item = named(name);
        ASSERT_NE(item, nullptr) << name.toStdString();
        item->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
    }
    const std::vector<std::string>& repoPaths() const {
        return scanners_.scanner->configuration().repoPaths;
    }

    static QQuickItem* find(QQuickItem* item, const QString& name) {
        if (!item->isVisible()) return nullptr;
        if (item->activeFocusOnTab() && PageHarness::nameOf(item) == name) return item;
        for (QQuickItem* child : item->childItems()) {
            if (QQuickItem* found = find(child, name)) return found;
        }
        return nullptr;
    }

    Complaints complaints_;
    ScannerHarness scanners_;
    ViewWindows windows_;
    int dismissed_ = 0;
    std::unique_ptr<QQuickWindow> window_;
};

TEST_F(SettingsPage, DrawsEachPaneWithoutAComplaint) {
    for (const char* pane : {"Discovery", "Display", "Repositories"}) {
        press(QString::fromUtf8(pane));
    }
    EXPECT_THAT(complaints_.texts(), ::testing::IsEmpty());
}

TEST_F(SettingsPage, AddsWhatIsTypedByReturn) {
    for (QQuickItem* item = window_->contentItem();;) {
        item = item->nextItemInFocusChain();
        if (item->inherits("QQuickTextInput")) {
            item->forceActiveFocus(Qt::TabFocusReason);
            break;
        }
    }
    for (const char each : std::string("/srv/work")) QTest::keyClick(window_.get(), each);
    key(Qt::Key_Return);
    EXPECT_THAT(repoPaths(), ::testing::Contains("/srv/work"));
    EXPECT_EQ(dismissed_, 0);
}

TEST_F(SettingsPage, IsDoneByReturn) {
    press(QStringLiteral("Display"));
    key(Qt::Key_Tab);
    window_->contentItem()->childItems().front()->forceActiveFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(dismissed_, 1);
}

TEST_F(SettingsPage, SetsAToggleByTheSpaceBar) {
    press(QStringLiteral("Display"));
    ASSERT_TRUE(scanners_.scanner->configuration().showTags);
    press(QStringLiteral("Show tags"));
    EXPECT_FALSE(scanners_.scanner->configuration().showTags);
}

TEST_F(SettingsPage, RemovesARepositoryWhosePathIsNotUtf8) {
    ASSERT_EQ(repoPaths().size(), 2U);
    QQuickItem* last = nullptr;
    QQuickItem* item = window_->contentItem();
    for (int step = 0; step < 40; ++step) {
        item = item->nextItemInFocusChain();
        if (PageHarness::nameOf(item).startsWith(QStringLiteral("Remove"))) last = item;
        if (last && item != last) break;
    }
    ASSERT_NE(last, nullptr);
    for (int step = 0; step < 40; ++step) {
        item = item->nextItemInFocusChain();
        if (PageHarness::nameOf(item).startsWith(QStringLiteral("Remove")) &&
            PageHarness::nameOf(item).contains(QChar(0xfffd))) {
            item->forceActiveFocus(Qt::TabFocusReason);
            key(Qt::Key_Space);
            break;
        }
    }
    EXPECT_THAT(repoPaths(), ::testing::ElementsAre("~/one"));
}

TEST_F(SettingsPage, BringsTheControlOfTheFocusIntoSight) {
    press(QStringLiteral("Display"));
    for (int step = 0; step < 20; ++step) {
        key(Qt::Key_Tab);
        const QQuickItem* focused = window_->activeFocusItem();
        ASSERT_NE(focused, nullptr);
        EXPECT_LT(focused->mapToScene({0, 0}).y(), 560);
        EXPECT_GE(focused->mapToScene({0, 0}).y(), 0);
    }
}

}  // namespace
}  // namespace tarnbeck::testing
