#include "ViewWindows.h"

#include <utility>

#include <QKeyEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QVariantMap>

#include "Appearance.h"
#include "MainViewAdapter.h"
#include "SymbolProvider.h"

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

QUrl pageUrl(const QString& name) {
    return QUrl(QStringLiteral("qrc:/qt/qml/Tarnbeck/%1.qml").arg(name));
}

}  // namespace

class ViewWindows::Implementation {
  public:
    Implementation() {
        engine_.addImportPath(QStringLiteral(":/qt/qml"));
        engine_.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
        style_ = engine_.singletonInstance<QObject*>(
            qmlTypeId("Tarnbeck", 1, 0, "Style"));
        focusMode_ = std::make_unique<FocusModeFilter>(*style_);
        QObject::connect(&appearance_, &Appearance::changed, style_, [this] { takeAppearance(); });
        takeAppearance();
    }

    std::unique_ptr<QQuickView> window(const QString& page, const QVariantMap& properties) {
        auto window = std::make_unique<QQuickView>(&engine_, nullptr);
        window->setColor(style_->property("backdropBase").value<QColor>());
        window->setResizeMode(QQuickView::SizeRootObjectToView);
        window->setInitialProperties(properties);
        window->setSource(pageUrl(page));
        window->installEventFilter(focusMode_.get());
        return window;
    }

    QQmlEngine& engine() { return engine_; }

    std::unique_ptr<MainViewAdapter> mainAdapter;
    std::unique_ptr<MainViewAdapter> popoverAdapter;
    std::unique_ptr<QQuickView> mainWindow;
    std::unique_ptr<QQuickView> popoverWindow;

  private:
    void takeAppearance() {
        style_->setProperty("isDark", appearance_.isDark());
        style_->setProperty("reducesMotion", appearance_.reducesMotion());
    }

    Appearance appearance_;
    QQmlEngine engine_;
    QObject* style_ = nullptr;  // the engine's
    std::unique_ptr<FocusModeFilter> focusMode_;
};

ViewWindows::ViewWindows() = default;

ViewWindows::~ViewWindows() = default;

}  // namespace tarnbeck
