// SPDX-License-Identifier: GPL-3.0-or-later
#import <AppKit/AppKit.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

#include <utility>

#import "hosts/auv3/doubles/PlatformDoubles.h"

@implementation NSWindow
@end

@implementation NSView {
    NSWindow* __unsafe_unretained _window;
}
- (NSWindow*)window {
    return _window;
}
- (void)moveToWindow:(NSWindow*)window {
    _window = window;
}
- (instancetype)initWithFrame:(NSRect)frame {
    self = [super init];
    self.bounds = {{0, 0}, frame.size};
    return self;
}
@end

/// Loads its view when it is first asked for it.
@implementation NSViewController {
    NSView* _view;
}
- (NSView*)view {
    if (_view == nil) {
        [self loadView];
        [self viewDidLoad];
    }
    return _view;
}
- (void)setView:(NSView*)view {
    _view = view;
}
- (void)loadView {
    _view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, 0, 0)];
}
- (void)viewDidLoad {
}
- (void)viewDidLayout {
}
@end

/// Nothing is asked of it, and no object can be made before the program has started.
UTType* const UTTypeJSON = static_cast<UTType*>(static_cast<id>(@"public.json"));

namespace {

NSSavePanel* lastPanel = nil;

}  // namespace

@implementation NSSavePanel {
    NSURL* _url;
    void (^_handler)(NSModalResponse);
    NSWindow* __unsafe_unretained _sheetParent;
}
+ (NSSavePanel*)savePanel {
    return [[self alloc] init];
}
- (NSURL*)URL {
    return _url;
}
- (void)beginWithCompletionHandler:(void (^)(NSModalResponse))handler {
    _handler = handler;
    lastPanel = self;
}
- (void)beginSheetModalForWindow:(NSWindow*)window completionHandler:(void (^)(NSModalResponse))handler {
    _sheetParent = window;
    [self beginWithCompletionHandler:handler];
}
- (NSWindow*)sheetParent {
    return _sheetParent;
}
- (void)answer:(NSURL*)url {
    _url = url;
    lastPanel = nil;
    std::exchange(_handler, nil)(url == nil ? 0 : NSModalResponseOK);
}
@end

@implementation NSOpenPanel
+ (NSOpenPanel*)openPanel {
    return [[self alloc] init];
}
@end

namespace quillo::test {

NSSavePanel* openPanel() {
    return lastPanel;
}

}  // namespace quillo::test
