// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "audiounit/platform/AURenderEvent.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "benchmarks/BenchmarkRules.hpp"

namespace quillo::bench {

inline constexpr std::size_t eventsPerCycle = 256;
inline constexpr AUAudioFrameCount cycleLength = 512;

/// Which events a cycle brings: notes in a scrambled order, always `middleNote`, or a value of
/// `sharedController` that no rule knows.
enum class Events { notes, middleNotes, unknownValues };

/// A cycle's events on `eventChannel`, one every other frame from 0.
class EventStream {
public:
    explicit EventStream(Events events) {
        for (std::size_t number = 0; number < eventsPerCycle; ++number) {
            const auto time = static_cast<AUEventSampleTime>(2 * number);
            static_cast<void>(list_.tryPushMIDI(time, message(events, number)));
        }
    }

    [[nodiscard]] const AURenderEvent* head() const { return list_.head(); }

    /// Calls `visit` with each event, in order.
    template <class Visit>
    void forEach(const Visit& visit) const {
        for (const auto* event = list_.head(); event != nullptr; event = event->next) {
            visit(*static_cast<const AUMIDIEvent*>(event));
        }
    }

private:
    static std::array<std::uint8_t, 3> message(Events events, std::size_t number) {
        constexpr std::size_t scramble = 77;
        switch (events) {
        case Events::notes:
            return {0x90 | eventChannel, static_cast<std::uint8_t>(number * scramble % 128), 100};
        case Events::middleNotes: return {0x90 | eventChannel, middleNote, 100};
        case Events::unknownValues: break;
        }
        return {0xB0 | eventChannel, sharedController, otherValue};
    }

    RenderEventList list_{eventsPerCycle};
};

}  // namespace quillo::bench
