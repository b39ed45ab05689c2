#include <algorithm>
#include <set>

#include "PageHarness.h"
#include "SampleRepositories.h"

namespace tarnbeck::testing {
namespace {

const auto dirtyPath = std::string("/home/ada/projects/anchorage-api");

// Opens all that can be opened in the sections on the screen.
void openEverything(PageHarness& page) {
    for (const GitRepository& repository : sampleRepositories()) {
        const auto section = page.view->section(repository.path);
        if (!section) continue;
        for (const Row& row : section->rows) {
            if (row.isExpanded != false) continue;
            page.view->perform(
                {.path = repository.path, .rowId = row.id, .kind = RowActionKind::toggle});
        }
    }
    page.settle();
}

std::string rowOffering(PageHarness& page, RowActionKind kind) {
    for (const Row& row : page.view->section(dirtyPath)->rows) {
        for (const RowAction& action : row.actions) {
            if (action.kind == kind) return row.id;
        }
    }
    return {};
}

void askToDiscard(PageHarness& page) {
    openEverything(page);
    page.view->perform({.path = dirtyPath,
                        .rowId = rowOffering(page, RowActionKind::discard),
                        .kind = RowActionKind::discard});
    page.settle();
}

QQuickItem* rowsOf(PageHarness& page, int column = 0) {
    for (QQuickItem* item : page.items()) {
        if (item->inherits("QQuickListView") && item->property("keepsFocus").toBool() &&
            column-- == 0) {
            return item;
        }
    }
    return nullptr;
}

TEST(MainPage, DrawsEachOfItsStatesWithoutAComplaint) {
    const Complaints complaints;
    PageHarness page;
    page.show(sampleRepositories());
    openEverything(page);
    page.view->toggleAwake();
    page.view->setSearchText("ti");
    page.harness.advance(std::chrono::seconds(1));
    page.settle();
    page.view->setSearchText("nothing is called so");
    page.harness.advance(std::chrono::seconds(1));
    page.settle();
    page.view->setSearchText("");
    page.harness.advance(std::chrono::seconds(1));
    page.settle();
    for (const DomainMode domain :
         {DomainMode::issues, DomainMode::dependencies, DomainMode::combined, DomainMode::git}) {
        page.view->chooseDomain(domain);
        page.settle();
    }
    page.view->toggleViewMode();
    page.settle();
    page.window->resize(700, 500);
    page.settle();
    page.view->toggleViewMode();
    page.settle();
    askToDiscard(page);
    page.view->answerAlert(1);
    page.settle();
    page.show({});
    EXPECT_THAT(complaints.texts(), ::testing::IsEmpty());
}

TEST(MainPage, DrawsBitByBitWhatItDrawsAtOnce) {
    PageHarness page(sampleRepositories());
    openEverything(page);
    page.view->toggleAwake();
    page.view->chooseDomain(DomainMode::combined);
    page.settle();
    QTest::qWait(700);  // what changed is tinted for a moment
    page.settle();
    const QImage bitByBit = page.window->grabWindow();
    page.window->resize(page.window->size() + QSize(1, 1));
    page.settle();
    page.window->resize(page.window->size() - QSize(1, 1));
    page.settle();

    EXPECT_EQ(page.window->grabWindow(), bitByBit);
}

TEST(MainPage, LeavesTheStripWhereItIsWhileAllOfItIsInSight) {
    PageHarness page(sampleRepositories());
    page.view->toggleViewMode();
    page.settle();
    const QQuickItem* scan = page.named(QStringLiteral("Scan"));
    ASSERT_NE(scan, nullptr);
    const double left = scan->mapToScene({0, 0}).x();
    for (int step = 0; step < 14; ++step) {
        page.key(Qt::Key_Tab);
        EXPECT_EQ(scan->mapToScene({0, 0}).x(), left) << page.focusName().toStdString();
    }
}

TEST(MainPage, GivesEveryButtonAName) {
    PageHarness page(sampleRepositories());
    openEverything(page);
    int buttons = 0;
    for (QQuickItem* item : page.items()) {
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
        if (!interface || interface->role() == QAccessible::StaticText) continue;
        if (!item->activeFocusOnTab() && interface->role() != QAccessible::Button) continue;
        ++buttons;
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
            << item->metaObject()->className() << " at " << item->x() << ", " << item->y();
    }
    EXPECT_GT(buttons, 15);
}

TEST(MainPage, ShowsEveryTextAsItStands) {
    GitRepository repository = samples::dirty();
    repository.name = "<b>bold</b>";
    PageHarness page({repository});
    int texts = 0;
    for (QQuickItem* item : page.items()) {
        if (!item->inherits("QQuickText")) continue;
        ++texts;
        EXPECT_EQ(item->property("textFormat").toInt(), Qt::PlainText)
            << item->property("text").toString().toStdString();
    }
    EXPECT_GT(texts, 20);
}

TEST(MainPage, ReachesEveryControlByTab) {
    PageHarness page(sampleRepositories());
    std::set<QString> reached;
    for (int step = 0; step < 60; ++step) {
        page.key(Qt::Key_Tab);
        reached.insert(page.focusName());
    }
    for (const char* name : {"Masonry", "Scan", "Sort", "Equalize", "Awake", "Settings", "Filter",
                             "Domain", "Refresh git data for this repository"}) {
        EXPECT_TRUE(reached.contains(QString::fromUtf8(name))) << name;
    }
}

TEST(MainPage, FindsByControlFAndClearsByEscape) {
    PageHarness page(sampleRepositories());
    page.key(Qt::Key_F, Qt::ControlModifier);
    page.type(QStringLiteral("anchor"));
    page.harness.advance(std::chrono::milliseconds(200));
    page.settle();
    EXPECT_THAT(page.view->visibleRepoPaths(), ::testing::ElementsAre(dirtyPath));
    page.key(Qt::Key_Escape);
    page.harness.advance(std::chrono::milliseconds(200));
    page.settle();
    EXPECT_GT(page.view->visibleRepoPaths().size(), 1U);
}

TEST(MainPage, MovesAmongTheRowsByArrowKeysAndOpensAndClosesThem) {
    PageHarness page({samples::dirty()});
    QQuickItem* rows = rowsOf(page);
    ASSERT_NE(rows, nullptr);
    rows->forceActiveFocus(Qt::TabFocusReason);
    page.settle();
    EXPECT_EQ(rows->property("currentIndex").toInt(), 0);
    const std::size_t before = page.view->section(dirtyPath)->rows.size();
    page.key(Qt::Key_Left);
    EXPECT_LT(page.view->section(dirtyPath)->rows.size(), before);
    page.key(Qt::Key_Right);
    EXPECT_EQ(page.view->section(dirtyPath)->rows.size(), before);
    page.key(Qt::Key_Down);
    EXPECT_EQ(rows->property("currentIndex").toInt(), 1);
    page.key(Qt::Key_Up);
    page.key(Qt::Key_Return);
    EXPECT_LT(page.view->section(dirtyPath)->rows.size(), before);
}

TEST(MainPage, BeginsAnAlertOnCancelAndTakesEscapeForIt) {
    PageHarness page({samples::dirty()});
    askToDiscard(page);
    EXPECT_EQ(page.focusName(), QStringLiteral("Cancel"));
    page.key(Qt::Key_Tab);
    EXPECT_EQ(page.focusName(), QStringLiteral("Discard"));
    page.key(Qt::Key_Tab);
    EXPECT_EQ(page.focusName(), QStringLiteral("Cancel"));
    page.key(Qt::Key_Escape);
    EXPECT_FALSE(page.view->content().alert);
}

TEST(MainPage, KeepsWhereAColumnIsScrolledToAndTheFocusThroughAChange) {
    GitRepository repository = samples::dirty();
    PageHarness page({repository}, {900, 320});
    openEverything(page);
    QQuickItem* rows = rowsOf(page);
    ASSERT_NE(rows, nullptr);
    rows->forceActiveFocus();
    rows->setProperty("contentY", 60);
    rows->setProperty("currentIndex", 4);
    repository.stashCount = 0;
    repository.stashes = {};
    page.harness.scanner().setRepositories({std::make_shared<const GitRepository>(repository)});
    page.settle();
    EXPECT_EQ(rows->property("contentY").toDouble(), 60);
    EXPECT_EQ(rows->property("currentIndex").toInt(), 4);
    EXPECT_TRUE(rows->hasActiveFocus());
}

TEST(MainPage, KeepsALongNameClearOfTheBadges) {
    GitRepository repository = samples::dirty();
    repository.name = std::string(300, 'w');
    PageHarness page({repository}, {520, 400});
    QQuickItem* name = nullptr;
    for (QQuickItem* item : page.items()) {
        if (item->property("text").toString().size() == 300) name = item;
    }
    ASSERT_NE(name, nullptr);
    EXPECT_LT(name->mapToScene({name->width(), 0}).x(), 440);
    EXPECT_TRUE(name->property("truncated").toBool());
}

TEST(MainPage, MakesOnlyTheColumnsInSight) {
    PageHarness page;
    page.harness.scanner().setRepositories(manySampleRepositories(500));
    page.settle();
    std::ptrdiff_t headers = 0;
    for (QQuickItem* item : page.items()) {
        headers += QString::fromUtf8(item->metaObject()->className())
                       .startsWith(QStringLiteral("SectionHeader"));
    }
    EXPECT_GE(headers, 3);
    EXPECT_LE(headers, 8);
}

TEST(MainPage, MakesOnlyTheCardsNearTheViewportOfTheMasonry) {
    PageHarness page;
    page.harness.scanner().setRepositories(manySampleRepositories(500));
    page.view->toggleViewMode();
    page.settle();
    std::ptrdiff_t headers = 0;
    for (QQuickItem* item : page.items()) {
        headers += QString::fromUtf8(item->metaObject()->className())
                       .startsWith(QStringLiteral("SectionHeader"));
    }
    EXPECT_GE(headers, 2);
    EXPECT_LE(headers, 30);
}

TEST(MainPage, GivesTheFocusBackToTheRowsWhenAnAlertIsCancelled) {
    PageHarness page({samples::dirty()});
    openEverything(page);
    QQuickItem* rows = rowsOf(page);
    ASSERT_NE(rows, nullptr);
    rows->forceActiveFocus(Qt::TabFocusReason);
    rows->setProperty("currentIndex", 3);
    page.settle();
    askToDiscard(page);
    page.key(Qt::Key_Escape);
    EXPECT_FALSE(page.view->content().alert);
    EXPECT_TRUE(rows->hasActiveFocus());
    page.key(Qt::Key_Down);
    EXPECT_EQ(rows->property("currentIndex").toInt(), 4);
}

TEST(MainPage, LeavesTheSearchFieldAloneWhileAnAlertIsOpen) {
    PageHarness page({samples::dirty()});
    askToDiscard(page);
    page.key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(page.focusName(), QStringLiteral("Cancel"));
}

TEST(MainPage, OpensTheContextActionOfACopyButtonAndCopiesByIt) {
    PageHarness page({samples::dirty()});
    QQuickItem* rows = rowsOf(page);
    ASSERT_NE(rows, nullptr);
    rows->forceActiveFocus(Qt::TabFocusReason);
    page.key(Qt::Key_Down);
    QQuickItem* button = page.named(QStringLiteral("Copy branch name"));
    ASSERT_NE(button, nullptr);
    button->forceActiveFocus(Qt::TabFocusReason);
    page.key(Qt::Key_Menu);
    ASSERT_NE(page.named(QStringLiteral("Copy \"main\"")), nullptr);
    page.key(Qt::Key_Return);
    EXPECT_THAT(page.harness.clipboard.copied, ::testing::ElementsAre("main"));
    EXPECT_TRUE(rows->hasActiveFocus());
}

TEST(MainPage, GoesFromColumnToColumnByControlAndTheArrows) {
    PageHarness page(sampleRepositories(), {1000, 600});
    QQuickItem* rows = rowsOf(page);
    ASSERT_NE(rows, nullptr);
    rows->forceActiveFocus(Qt::TabFocusReason);
    page.settle();
    for (int step = 0; step < 5; ++step) page.key(Qt::Key_Right, Qt::ControlModifier);
    const QQuickItem* focused = page.window->activeFocusItem();
    ASSERT_NE(focused, nullptr);
    const double left = focused->mapToScene({0, 0}).x();
    EXPECT_GE(left, 0);
    EXPECT_LT(left, 1000);
    double scrolled = 0;
    for (QQuickItem* item : page.items()) {
        scrolled = std::max(scrolled, item->property("contentX").toDouble());
    }
    EXPECT_GT(scrolled, 900);
}

TEST(MainPage, ReachesEveryColumnByTab) {
    PageHarness page(sampleRepositories(), {1000, 600});
    double farthest = 0;
    for (int step = 0; step < 80; ++step) {
        page.key(Qt::Key_Tab);
        for (QQuickItem* item : page.items()) {
            farthest = std::max(farthest, item->property("contentX").toDouble());
        }
    }
    EXPECT_GT(farthest, 1500);
}

TEST(MainPage, BringsTheRowOfTheFocusIntoSightInTheMasonry) {
    PageHarness page(sampleRepositories(), {1000, 400});
    page.view->toggleViewMode();
    openEverything(page);
    for (int step = 0; step < 90; ++step) {
        page.key(Qt::Key_Tab);
        const QQuickItem* focused = page.window->activeFocusItem();
        ASSERT_NE(focused, nullptr);
        EXPECT_LT(focused->mapToScene({0, 0}).y(), 400);
    }
}

}  // namespace
}  // namespace tarnbeck::testing
