// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AUAudioUnitImplementation.h>

#include <vector>

#include "platform/RealTime.hpp"

@interface Unit : AUAudioUnit
@end

@implementation Unit {
    std::vector<int> _numbers;
}
- (AUInternalRenderBlock)internalRenderBlock {
    auto* numbers = &_numbers;
    return ^AUAudioUnitStatus(AudioUnitRenderActionFlags*, const AudioTimeStamp*, AUAudioFrameCount,
                              NSInteger, AudioBufferList*, const AURenderEvent*,
                              AURenderPullInputBlock) QUILLO_REALTIME {
#ifdef RIGHT
        return static_cast<int>(numbers->size());
#else
        numbers->push_back(1);
        return 0;
#endif
    };
}
@end
