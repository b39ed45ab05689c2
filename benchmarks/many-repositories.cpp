// The main view with as many repositories as are asked for, and nothing of the machine behind it:
// `many-repositories COUNT` shows them in a window of 1200 by 850 and does nothing more;
// `many-repositories COUNT hidden` shows them in the popover and closes it after its first frame.
#include <QApplication>
#include <QQuickWindow>
#include <QTimer>
#include <cstdlib>
#include <string_view>

#include "Fixture.h"
#include "SampleRepositories.h"
#include "Studio.h"

using namespace tarnbeck;

int main(int argc, char** argv) {
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    const int count = argc > 1 ? std::atoi(argv[1]) : 100;
    const bool hides = argc > 2 && std::string_view(argv[2]) == "hidden";
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const benchmark::Folder home;
    testing::Studio studio(home.path());
    studio.scanner().setRepositories(
        testing::manySampleRepositories(static_cast<std::size_t>(count)));
    studio.make({1200, 850}, {.usesPopoverAppearance = hides}).chooseFilter(FilterMode::all);
    if (hides) {
        QObject::connect(&studio.window(), &QQuickWindow::frameSwapped, &studio.window(), [&] {
            QTimer::singleShot(0, &studio.window(), [&] { studio.closePopover(); });
        });
    }
    studio.window().show();
    return QApplication::exec();
}
