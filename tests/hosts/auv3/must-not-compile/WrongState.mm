// SPDX-License-Identifier: GPL-3.0-or-later
#import <AudioToolbox/AudioToolbox.h>

void restore(AUAudioUnit* unit, NSDictionary<NSString*, id>* state, NSData* document) {
#ifdef RIGHT
    static_cast<void>(document);
    unit.fullState = state;
#else
    static_cast<void>(state);
    unit.fullState = document;
#endif
}
