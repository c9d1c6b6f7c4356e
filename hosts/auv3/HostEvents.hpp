// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "audiounit/platform/AURenderEvent.hpp"
#include "hosts/auv3/UniversalPackets.hpp"
#include "platform/RealTime.hpp"

/// The platform's list of render events, read without knowing the platform: `HostEvent` is its union of all
/// kinds of events, whose members have the platform's names. Whatever is no short MIDI message is passed
/// over, as the unit would do. [render]
namespace quillo {

/// The kind of event that holds MIDI in Universal MIDI Packets, with the platform's value.
inline constexpr std::uint8_t eventListType = 10;

/// Hands the unit's form of each message of an event list to `receive`, all at the list's own time.
template <class HostEventList, class Receive>
void receiveEventList(const HostEventList& list, Receive& receive) QUILLO_REALTIME {
    const auto receiveMessage = [&](std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        AUMIDIEvent event;
        event.eventSampleTime = list.eventSampleTime;
        event.length = static_cast<std::uint16_t>(bytes.size());
        event.cable = list.cable;
        std::copy(bytes.begin(), bytes.end(), event.data.begin());
        receive(event);
    };
    const auto* packet = &list.eventList.packet[0];
    for (std::size_t count = list.eventList.numPackets; count > 0; --count) {
        const std::uint32_t* words = packet->words;
        forEachShortMessage({words, packet->wordCount}, receiveMessage);
        packet = reinterpret_cast<decltype(packet)>(words + packet->wordCount);
    }
}

/// Hands the unit's form of each MIDI event from `head` on to `receive`, in list order.
template <class HostEvent, class Receive>
void receiveEvents(const HostEvent* head, Receive&& receive) QUILLO_REALTIME {
    for (const auto* event = head; event != nullptr; event = event->head.next) {
        const auto type = static_cast<std::uint8_t>(event->head.eventType);
        if (type == static_cast<std::uint8_t>(AURenderEventType::midi)) {
            const auto& midi = event->MIDI;
            AUMIDIEvent translated;
            translated.eventSampleTime = midi.eventSampleTime;
            translated.length = midi.length;
            translated.cable = midi.cable;
            std::copy_n(midi.data, translated.data.size(), translated.data.begin());
            receive(translated);
        } else if (type == eventListType) {
            receiveEventList(event->MIDIEventsList, receive);
        }
    }
}

}  // namespace quillo
