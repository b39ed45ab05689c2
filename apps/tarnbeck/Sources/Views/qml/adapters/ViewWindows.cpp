#include "ViewWindows.h"

#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QVariantMap>
#include <utility>

#include "Appearance.h"
#include "MainViewAdapter.h"
#include "RepositorySectionLayout.h"
#include "SettingsAdapter.h"
#include "SymbolProvider.h"

// Made by the build: what of C++ the module "Tarnbeck" knows.
void qml_register_types_Tarnbeck();

namespace tarnbeck {

namespace {

// Tells the style whether the keyboard or the pointer was touched last.
class FocusModeFilter : public QObject {
  public:
    explicit FocusModeFilter(QObject& style) : style_(style) {}

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) style_.setProperty("focusByKeyboard", true);
        if (event->type() == QEvent::MouseButtonPress) style_.setProperty("focusByKeyboard", false);
        return false;
    }

  private:
    QObject& style_;
};

// Passes on a signal of a page, which only Qt's meta-objects know.
class Dismissal : public QObject {
    Q_OBJECT

  public:
    Dismissal(QObject& page, const std::function<void()>& action) : action_(action) {
        connect(&page, SIGNAL(dismissed()), this, SLOT(pass()));
    }

  private Q_SLOTS:
    void pass() { action_(); }

  private:
    const std::function<void()>& action_;
};

// Stands below the window in `SettingsWindow`, so that it goes after what is drawn of it.
struct SettingsBelow {
    std::unique_ptr<SettingsAdapter> adapter;
};

class SettingsWindow : private SettingsBelow, public QQuickView {
  public:
    SettingsWindow(QQmlEngine& engine, std::unique_ptr<SettingsView> view)
        : SettingsBelow{std::make_unique<SettingsAdapter>(std::move(view))},
          QQuickView(&engine, nullptr) {}

    SettingsAdapter* adapter() const { return SettingsBelow::adapter.get(); }
};

QUrl pageUrl(const QString& name) {
    return QUrl(QStringLiteral("qrc:/qt/qml/Tarnbeck/%1.qml").arg(name));
}

}  // namespace

class ViewWindows::Implementation {
  public:
    Implementation() {
        qml_register_types_Tarnbeck();
        engine_.addImportPath(QStringLiteral(":/qt/qml"));
        engine_.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
        style_ = findStyle();
        takeMeasures();
        focusMode_ = std::make_unique<FocusModeFilter>(*style_);
        QObject::connect(&appearance_, &Appearance::changed, style_, [this] { takeAppearance(); });
        takeAppearance();
    }

    // Lets the page fill the window.
    void fill(QQuickView& window, const QString& page, const QVariantMap& properties) {
        window.setColor(style_->property("backdropBase").value<QColor>());
        window.setResizeMode(QQuickView::SizeRootObjectToView);
        window.setInitialProperties(properties);
        window.setSource(pageUrl(page));
        window.installEventFilter(focusMode_.get());
    }
    std::unique_ptr<QQuickView> window(const QString& page, const QVariantMap& properties) {
        auto window = std::make_unique<QQuickView>(&engine_, nullptr);
        fill(*window, page, properties);
        return window;
    }

    void makeMainWindow(std::unique_ptr<MainView> view) {
        mainView_ = std::make_unique<MainViewAdapter>(std::move(view));
        mainWindow_ = window(QStringLiteral("MainWindowRoot"),
                             {{"view", QVariant::fromValue(mainView_.get())}});
        mainWindow_->setMinimumSize({480, 320});
        QObject::connect(mainWindow_.get(), &QWindow::visibleChanged, mainView_.get(),
                         [this](bool visible) { mainView_->setVisible(visible); });
    }
    QQuickWindow* mainWindow() { return mainWindow_.get(); }

    void makePopoverWindow(std::function<void()> onDismissed) {
        onDismissed_ = std::move(onDismissed);
        popoverWindow_ = window(QStringLiteral("MainWindowRoot"), {{"isPopover", true}});
        popoverWindow_->setTitle(QStringLiteral("Tarnbeck popover"));
        popoverWindow_->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        dismissal_ = std::make_unique<Dismissal>(*popoverWindow_->rootObject(), onDismissed_);
    }
    QQuickWindow* popoverWindow() { return popoverWindow_.get(); }

    void setPopoverView(std::unique_ptr<MainView> view) {
        std::unique_ptr<MainViewAdapter> before = std::move(popoverView_);
        if (view) popoverView_ = std::make_unique<MainViewAdapter>(std::move(view));
        if (popoverView_) popoverView_->setVisible(true);
        popoverWindow_->rootObject()->setProperty("view", QVariant::fromValue(popoverView_.get()));
        // It may be in the middle of what closed it.
        if (before) before.release()->deleteLater();
    }

    std::unique_ptr<QQuickWindow> settingsWindow(std::unique_ptr<SettingsView> view) {
        auto made = std::make_unique<SettingsWindow>(engine_, std::move(view));
        fill(*made, QStringLiteral("SettingsPage"),
             {{"view", QVariant::fromValue(made->adapter())}});
        return made;
    }

  private:
    // The one style of the engine, which only a document that imports it can name.
    QObject* findStyle() {
        QQmlComponent finder(&engine_);
        finder.setData(
            "import QtQml\nimport Tarnbeck\n"
            "QtObject { readonly property QtObject style: Style }",
            QUrl());
        const std::unique_ptr<QObject> found(finder.create());
        if (!found) qFatal("%s", qPrintable(finder.errorString()));
        return found->property("style").value<QObject*>();
    }

    void takeMeasures() {
        const RepositorySectionLayout layout;
        style_->setProperty("headerHeight", RepositorySectionLayout::headerHeight);
        style_->setProperty("bottomInset", RepositorySectionLayout::bottomInset);
        style_->setProperty("rowLeadingInset", layout.rowLeadingInset);
        style_->setProperty("rowChevronSlotWidth", layout.rowChevronSlotWidth);
        style_->setProperty("rowPrimaryIconSlotWidth", layout.rowPrimaryIconSlotWidth);
        style_->setProperty("rowTrailingInset", layout.rowTrailingInset);
        style_->setProperty("actionColumnWidth", layout.actionColumnWidth);
        style_->setProperty("metadataColumnWidth", layout.metadataColumnWidth);
    }

    void takeAppearance() {
        style_->setProperty("isDark", appearance_.isDark());
        style_->setProperty("reducesMotion", appearance_.reducesMotion());
        for (QQuickView* each : {mainWindow_.get(), popoverWindow_.get()}) {
            if (each) each->setColor(style_->property("backdropBase").value<QColor>());
        }
    }

    Appearance appearance_;
    std::unique_ptr<FocusModeFilter> focusMode_;
    // Below the engine, so that what is drawn goes before what it is bound to.
    std::unique_ptr<MainViewAdapter> mainView_;
    std::unique_ptr<MainViewAdapter> popoverView_;
    QQmlEngine engine_;
    QObject* style_ = nullptr;  // the engine's
    std::function<void()> onDismissed_;
    std::unique_ptr<QQuickView> mainWindow_;
    std::unique_ptr<QQuickView> popoverWindow_;
    std::unique_ptr<Dismissal> dismissal_;
};

ViewWindows::ViewWindows() : implementation_(std::make_unique<Implementation>()) {}

ViewWindows::~ViewWindows() = default;

QQuickWindow* ViewWindows::mainWindow(std::unique_ptr<MainView> view) {
    implementation_->makeMainWindow(std::move(view));
    return implementation_->mainWindow();
}

QQuickWindow* ViewWindows::popoverWindow(std::function<void()> onDismissed) {
    if (!implementation_->popoverWindow()) {
        implementation_->makePopoverWindow(std::move(onDismissed));
    }
    return implementation_->popoverWindow();
}

void ViewWindows::setPopoverView(std::unique_ptr<MainView> view) {
    implementation_->setPopoverView(std::move(view));
}

std::unique_ptr<QQuickWindow> ViewWindows::settingsWindow(std::unique_ptr<SettingsView> view) {
    return implementation_->settingsWindow(std::move(view));
}

}  // namespace tarnbeck

#include "ViewWindows.moc"
