// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/OSStatus.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// An absolute sample position on the host's render timeline.
using AUEventSampleTime = std::int64_t;

/// Kinds of render events, with the platform's values.
enum class AURenderEventType : std::uint8_t {
    parameter = 1,
    parameterRamp = 2,
    midi = 8,
    midiSysEx = 9,
};

/// What every event of a render cycle begins with; the event's own type says which structure it is.
struct AURenderEvent {
    const AURenderEvent* next = nullptr;  ///< the event after this one, null at the end of the list
    AUEventSampleTime eventSampleTime = 0;
    AURenderEventType eventType = AURenderEventType::midi;
};

/// A MIDI message of at most three bytes.
struct AUMIDIEvent : AURenderEvent {
    std::uint16_t length = 0;            ///< how many bytes of `data` belong to the message, 0 to 3
    std::uint8_t cable = 0;              ///< virtual cable
    std::array<std::uint8_t, 3> data{};  ///< bytes beyond `length` hold whatever the host left there
};

/// A system-exclusive message. The host keeps the bytes alive for the cycle.
struct AUMIDISysExEvent : AURenderEvent {
    std::span<const std::uint8_t> data;
};

/// The start of a render cycle. The sample time may have a fraction, as the platform's may.
struct AudioTimeStamp {
    double mSampleTime = 0.0;
};

using AUAudioFrameCount = std::uint32_t;

/// One render cycle: the cycle's start, its length in frames and the head of its event list (null when
/// there are no events). Called on the host's render thread. The first status other than `noErr` ends it.
using AUInternalRenderBlock =
    RealTimeFunction<OSStatus(const AudioTimeStamp& timestamp, AUAudioFrameCount frameCount,
                              const AURenderEvent* realtimeEventListHead)>;

/// How a unit hands one complete MIDI message to the host: sample time, virtual cable, bytes. The bytes are
/// the unit's and valid during the call. `noErr` means that the host has taken the message.
using AUMIDIOutputEventBlock = RealTimeFunction<OSStatus(
    AUEventSampleTime eventSampleTime, std::uint8_t cable, std::span<const std::uint8_t> midiBytes)>;

}  // namespace quillo
