// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <AppKit/AppKit.h>
#import <AudioToolbox/AUAudioUnitImplementation.h>
#import <AudioToolbox/AudioToolbox.h>
#import <CoreAudioKit/CoreAudioKit.h>

#include <string>
#include <vector>

namespace quillo::test {

/// How the doubles of the platform behave, and what they were asked to do.
struct PlatformDouble {
    bool makesUnits = true;
    bool makesBusses = true;
    bool allocates = true;
    bool keepsState = true;
    std::vector<std::string>
        calls;  ///< "allocate", "deallocate", "setFullState": what reached the base class
};

[[nodiscard]] PlatformDouble& platformDouble();

/// Runs what was dispatched to the main queue, and what comes of it. Whether there was anything.
bool runDispatchedBlocks();

/// The panel that was opened last, not answered yet.
[[nodiscard]] NSSavePanel* openPanel();

}  // namespace quillo::test

@interface NSView (Windows)
- (void)moveToWindow:(NSWindow*)window;
@end

@interface NSSavePanel (Answers)
/// The window that it is a sheet of, or nil.
@property(readonly) NSWindow* sheetParent;
/// The user chooses this file, or nothing.
- (void)answer:(NSURL*)url;
@end
