// The main page in a window without a display, over a main view in virtual time.
#pragma once

#include <QAccessible>
#include <QCoreApplication>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "MainViewHarness.h"
#include "ViewWindows.h"

namespace tarnbeck::testing {

// What Qt and QML complained of while this lived.
class Complaints {
  public:
    Complaints() {
        list().clear();
        before_ = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext&, const QString& text) {
                if (type != QtDebugMsg && type != QtInfoMsg) list().push_back(text.toStdString());
            });
    }
    ~Complaints() { qInstallMessageHandler(before_); }
    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;

    const std::vector<std::string>& texts() const { return list(); }

  private:
    static std::vector<std::string>& list() {
        static std::vector<std::string> texts;
        return texts;
    }
    QtMessageHandler before_;
};

class PageHarness {
  public:
    explicit PageHarness(std::vector<GitRepository> repositories = {}, QSize size = {1460, 800}) {
        harness.show(std::move(repositories));
        view = harness.view.get();
        window = windows.mainWindow(std::move(harness.view));
        window->resize(size);
        window->show();
        window->requestActivate();
        settle();
    }

    void show(std::vector<GitRepository> repositories) {
        std::vector<RepositorySnapshot> snapshots;
        for (GitRepository& repository : repositories) {
            snapshots.push_back(std::make_shared<const GitRepository>(std::move(repository)));
        }
        harness.scanner().setRepositories(std::move(snapshots));
        settle();
    }
    // Runs what was posted, and lets what moves come to rest.
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            harness.settle();
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            window->grabWindow();  // lays out what is to be laid out
        }
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window, key, modifiers);
        settle();
    }
    void type(const QString& text) {
        for (const QChar each : text) QTest::keyClick(window, each.toLatin1());
        settle();
    }
    void click(const QQuickItem* item) {
        const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, middle.toPoint());
        settle();
    }

    // Every visible item, in the order in which it is drawn.
    std::vector<QQuickItem*> items() const {
        std::vector<QQuickItem*> all;
        collect(window->contentItem(), all);
        return all;
    }
    static QString nameOf(QQuickItem* item) {
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
        return interface ? interface->text(QAccessible::Name) : QString();
    }
    // The first visible item of this accessible name; null when there is none.
    QQuickItem* named(const QString& name) const {
        for (QQuickItem* item : items()) {
            if (nameOf(item) == name) return item;
        }
        return nullptr;
    }
    QString focusName() const {
        return window->activeFocusItem() ? nameOf(window->activeFocusItem()) : QString();
    }

    MainViewHarness harness;
    MainView* view = nullptr;  // the window's
    ViewWindows windows;
    QQuickWindow* window = nullptr;

  private:
    static void collect(QQuickItem* item, std::vector<QQuickItem*>& all) {
        if (!item->isVisible()) return;
        all.push_back(item);
        for (QQuickItem* child : item->childItems()) collect(child, all);
    }
};

}  // namespace tarnbeck::testing
