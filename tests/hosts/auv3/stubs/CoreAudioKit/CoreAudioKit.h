// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <AppKit/AppKit.h>
#import <AudioToolbox/AudioToolbox.h>

@interface AUAudioUnitViewConfiguration : NSObject
- (instancetype)initWithWidth:(double)width height:(double)height hostHasController:(BOOL)hostHasController;
@property(readonly) double width;
@property(readonly) double height;
@end

@interface AUAudioUnit (AUAudioUnitViewConfigurations)
- (NSIndexSet*)supportedViewConfigurations:
    (NSArray<AUAudioUnitViewConfiguration*>*)availableViewConfigurations;
@end

@protocol AUAudioUnitFactory
- (AUAudioUnit*)createAudioUnitWithComponentDescription:(AudioComponentDescription)desc
                                                  error:(NSError**)error;
@end

@interface AUViewController : NSViewController
@end
