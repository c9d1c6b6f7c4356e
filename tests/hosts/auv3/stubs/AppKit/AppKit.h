// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <Foundation/Foundation.h>

struct NSSize {
    double width;
    double height;
};
struct NSPoint {
    double x;
    double y;
};
struct NSRect {
    NSPoint origin;
    NSSize size;
};
inline NSSize NSMakeSize(double width, double height) {
    return {width, height};
}
inline NSRect NSMakeRect(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

@interface NSWindow : NSObject
@end

@interface NSView : NSObject
- (instancetype)initWithFrame:(NSRect)frame;
@property(nonatomic) NSRect bounds;
@property(readonly, unsafe_unretained) NSWindow* window;
@end

@interface NSViewController : NSObject
@property(strong) NSView* view;
@property(nonatomic) NSSize preferredContentSize;
- (void)loadView;
- (void)viewDidLoad;
- (void)viewDidLayout;
@end

@class UTType;
typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSModalResponseOK = 1 };

@interface NSSavePanel : NSObject
+ (NSSavePanel*)savePanel;
@property(copy) NSArray<UTType*>* allowedContentTypes;
@property(copy) NSString* nameFieldStringValue;
@property(readonly) NSURL* URL;
- (void)beginWithCompletionHandler:(void (^)(NSModalResponse response))handler;
- (void)beginSheetModalForWindow:(NSWindow*)window
               completionHandler:(void (^)(NSModalResponse response))handler;
@end

@interface NSOpenPanel : NSSavePanel
+ (NSOpenPanel*)openPanel;
@end

@interface NSApplication : NSObject
@property(class, readonly) NSApplication* sharedApplication;
@end

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSModalResponse)runModal;
@end
