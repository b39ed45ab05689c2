#include <AppKit/AppKit.h>

#include "QtDesktopPlatform.h"

namespace tarnbeck {

void applyActivationPolicy(ActivationPolicy policy) {
    switch (policy) {
        case ActivationPolicy::regular:
            [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
            return;
        case ActivationPolicy::accessory:
            [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
            return;
    }
}

void QtDesktopPlatform::installQuitMenu(std::string_view appName) {
    NSString* name = [[NSString alloc] initWithBytes:appName.data()
                                              length:appName.size()
                                            encoding:NSUTF8StringEncoding];
    NSMenu* commands = [[NSMenu alloc] init];
    [commands addItemWithTitle:[@"Quit " stringByAppendingString:name]
                        action:@selector(terminate:)
                 keyEquivalent:@"q"];
    NSMenuItem* application = [[NSMenuItem alloc] init];
    application.submenu = commands;
    NSMenu* menu = [[NSMenu alloc] init];
    [menu addItem:application];
    NSApp.mainMenu = menu;
}

}  // namespace tarnbeck
