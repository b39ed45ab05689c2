// What the application's windows are measured against: an empty one of Qt Quick. `empty-window`
// shows it, 1200 by 850, and does nothing more; `empty-window hidden` hides it after its first
// frame.
#include <QGuiApplication>
#include <QQuickView>
#include <QTimer>
#include <string_view>

int main(int argc, char** argv) {
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const bool hides = argc > 1 && std::string_view(argv[1]) == "hidden";
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QQuickView window(QUrl(QStringLiteral("qrc:/empty-window.qml")));
    window.resize(1200, 850);
    if (hides) {
        QObject::connect(&window, &QQuickWindow::frameSwapped, &window,
                         [&window] { QTimer::singleShot(0, &window, &QWindow::hide); });
    }
    window.show();
    return QGuiApplication::exec();
}
