// SPDX-License-Identifier: GPL-3.0-or-later
#import <CoreAudioKit/CoreAudioKit.h>

@interface Controller : AUViewController <AUAudioUnitFactory>
@end

@implementation Controller
#ifdef RIGHT
- (AUAudioUnit*)createAudioUnitWithComponentDescription:(AudioComponentDescription)description
                                                  error:(NSError**)error {
    return nil;
}
#endif
@end
