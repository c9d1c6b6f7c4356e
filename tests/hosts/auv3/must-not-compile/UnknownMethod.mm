// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AudioToolbox.h>

NSArray<NSString*>* namesOf(AUAudioUnit* unit) {
#ifdef RIGHT
    return unit.MIDIOutputNames;
#else
    return unit.midiOutputNames;
#endif
}
