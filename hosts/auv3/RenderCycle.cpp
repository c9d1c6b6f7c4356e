// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/RenderCycle.hpp"

namespace quillo {

void RenderCycle::begin(double sampleTime, AUAudioFrameCount frameCount) QUILLO_REALTIME {
    start_.mSampleTime = sampleTime;
    frameCount_ = frameCount;
    status_ = noErr;
    events_.clear();
}

void RenderCycle::receive(const AUMIDIEvent& event) QUILLO_REALTIME {
    if (status_ != noErr || events_.tryPush(event)) {
        return;
    }
    end();
    events_.clear();
    static_cast<void>(events_.tryPush(event));
}

OSStatus RenderCycle::end() QUILLO_REALTIME {
    if (status_ == noErr) {
        status_ = renderUnit_(start_, frameCount_, events_.head());
    }
    return status_;
}

}  // namespace quillo
