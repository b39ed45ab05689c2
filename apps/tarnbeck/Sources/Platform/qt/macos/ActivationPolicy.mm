#include <AppKit/AppKit.h>

#include "QtDesktopPlatform.h"

namespace tarnbeck {
namespace {

NSString* text(const std::string& bytes) {
    return [[NSString alloc] initWithBytes:bytes.data()
                                    length:bytes.size()
                                  encoding:NSUTF8StringEncoding];
}

SEL selectorOf(app_commands::CommandAction action) {
    switch (action) {
        case app_commands::CommandAction::terminate:
            return @selector(terminate:);
    }
    return nil;
}

NSMenu* menuOf(const std::vector<app_commands::CommandItem>& items) {
    NSMenu* menu = [[NSMenu alloc] init];
    for (const auto& item : items) {
        [menu addItemWithTitle:text(item.title)
                        action:selectorOf(item.action)
                 keyEquivalent:text(item.key)];
    }
    return menu;
}

}  // namespace

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

void QtDesktopPlatform::activateIgnoringOtherApps() {
    [NSApp activateIgnoringOtherApps:YES];
}

void QtDesktopPlatform::setMainMenu(const app_commands::MainMenu& menu) {
    NSMenu* bar = [[NSMenu alloc] init];
    for (const auto& item : menu.items) {
        NSMenuItem* entry = [[NSMenuItem alloc] init];
        entry.submenu = menuOf(item.submenu);
        [bar addItem:entry];
    }
    NSApp.mainMenu = bar;
}

}  // namespace tarnbeck
