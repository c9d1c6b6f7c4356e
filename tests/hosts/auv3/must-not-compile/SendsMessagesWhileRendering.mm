// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AUAudioUnitImplementation.h>

#include "platform/RealTime.hpp"

@interface Unit : AUAudioUnit
@end

@implementation Unit
- (AUInternalRenderBlock)internalRenderBlock {
    return ^AUAudioUnitStatus(AudioUnitRenderActionFlags*, const AudioTimeStamp*, AUAudioFrameCount frames,
                              NSInteger, AudioBufferList*, const AURenderEvent*,
                              AURenderPullInputBlock) QUILLO_REALTIME {
#ifdef RIGHT
        return frames > 512;
#else
        return frames > self.maximumFramesToRender;
#endif
    };
}
@end
