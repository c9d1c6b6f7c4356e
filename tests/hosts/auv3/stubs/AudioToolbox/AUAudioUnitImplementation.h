// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#import <AudioToolbox/AudioToolbox.h>

@interface AUAudioUnit (AUAudioUnitImplementation)
@property(readonly) AUInternalRenderBlock internalRenderBlock;
@end

@interface AUAudioUnitBus (AUAudioUnitBusImplementation)
@property AUAudioChannelCount maximumChannelCount;
@end
