// SPDX-License-Identifier: GPL-3.0-or-later
// The app that carries the extension. Once it has been started the system knows
// the audio unit.
#import <AppKit/AppKit.h>

int main() {
    @autoreleasepool {
        [NSApplication sharedApplication];
        NSAlert* alert = [[NSAlert alloc] init];
        alert.messageText = @"MIDI Quillo is installed";
        alert.informativeText = @"Open it in your host: it is among the MIDI processors.";
        [alert runModal];
    }
    return 0;
}
