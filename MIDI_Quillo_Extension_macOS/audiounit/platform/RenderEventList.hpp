// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "audiounit/platform/AURenderEvent.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// A host's side of the linked event list: events are pushed in the order in which the unit is to see them.
/// Storage is made once; `clear` and the pushes may run on the render thread.
///
///     RenderEventList events(1024);
///     events.tryPushMIDI(offset + cycleStart, bytes);
///     block(timestamp, frames, events.head());
class RenderEventList {
public:
    explicit RenderEventList(std::size_t capacity);

    /// The first event, null when the list is empty. Valid until the next `clear`.
    [[nodiscard]] const AURenderEvent* head() const QUILLO_REALTIME;

    [[nodiscard]] std::size_t size() const QUILLO_REALTIME { return size_; }

    void clear() QUILLO_REALTIME { size_ = 0; }

    /// Appends a MIDI event of `bytes` (at most three; the event's remaining data bytes are 0). False, and
    /// nothing appended, when the list is full.
    [[nodiscard]] bool tryPushMIDI(AUEventSampleTime time, std::span<const std::uint8_t> bytes)
        QUILLO_REALTIME;

    /// Appends any event, its link set by the list. False, and nothing appended, when the list is full.
    [[nodiscard]] bool tryPush(const AUMIDIEvent& event) QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const AUMIDISysExEvent& event) QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const AURenderEvent& event) QUILLO_REALTIME;

private:
    /// Room for an event of any kind, and the kind that it holds.
    struct Slot {
        AURenderEvent plain;
        AUMIDIEvent midi;
        AUMIDISysExEvent sysEx;
        AURenderEvent* event = nullptr;
    };

    template <class Event>
    bool tryAppend(Event Slot::* kind, const Event& event) QUILLO_REALTIME;

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

}  // namespace quillo
