// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AUAudioUnitImplementation.h>

#ifdef RIGHT
#define FRAME_COUNT AUAudioFrameCount
#else
#define FRAME_COUNT double
#endif

@interface Unit : AUAudioUnit
@end

@implementation Unit
- (AUInternalRenderBlock)internalRenderBlock {
    return ^AUAudioUnitStatus(AudioUnitRenderActionFlags*, const AudioTimeStamp*, FRAME_COUNT, NSInteger,
                              AudioBufferList*, const AURenderEvent*, AURenderPullInputBlock) {
        return 0;
    };
}
@end
