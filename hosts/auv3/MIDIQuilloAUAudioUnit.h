// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AudioToolbox.h>

#include "hosts/auv3/UnitBridge.hpp"

/// The audio unit as the platform sees it: each of its operations asks the
/// bridge. Input arrives as MIDI 1.0 bytes, because `AudioUnitMIDIProtocol` is
/// left as it is: the platform then translates whatever a host sends.
@interface MIDIQuilloAUAudioUnit : AUAudioUnit

- (quillo::UnitBridge&)bridge;

@end
