// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AudioToolbox.h>

@interface Unit : AUAudioUnit
@end

#ifdef RIGHT
#define BUSSES AUAudioUnitBusArray
#else
#define BUSSES NSArray
#endif

@implementation Unit
- (BUSSES*)inputBusses {
    return nil;
}
@end
