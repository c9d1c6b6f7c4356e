// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <utility>

#include "audiounit/platform/AURenderEvent.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "hosts/auv3/HostEvents.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// What the platform's render block holds and calls: the unit's own render operation, and room for the events
/// of a cycle in the unit's form. It may outlive the unit, and then does nothing.
class RenderCycle {
public:
    /// How many MIDI messages are handed over at once. In a cycle with more the unit is called several times
    /// at the same sample time, which changes nothing.
    static constexpr std::size_t capacity = 4096;

    explicit RenderCycle(AUInternalRenderBlock renderUnit) : renderUnit_(std::move(renderUnit)) {}

    /// [render] One cycle, one at a time. `HostEvent` is the platform's: see `receiveEvents`.
    template <class HostEvent>
    OSStatus render(double sampleTime, AUAudioFrameCount frameCount, const HostEvent* events)
        QUILLO_REALTIME {
        begin(sampleTime, frameCount);
        receiveEvents(events, [this](const AUMIDIEvent& event) QUILLO_REALTIME { receive(event); });
        return end();
    }

private:
    void begin(double sampleTime, AUAudioFrameCount frameCount) QUILLO_REALTIME;
    void receive(const AUMIDIEvent& event) QUILLO_REALTIME;
    OSStatus end() QUILLO_REALTIME;

    AUInternalRenderBlock renderUnit_;
    RenderEventList events_{capacity};
    AudioTimeStamp start_;
    AUAudioFrameCount frameCount_ = 0;
    OSStatus status_ = noErr;  ///< the first of this cycle other than `noErr`; after it nothing more is done
};

}  // namespace quillo
