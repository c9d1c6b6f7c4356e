// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <vector>

namespace quillo::test {

/// A list of render events in the platform's own form: `HostEvent` is its union of all kinds.
template <class HostEvent>
class HostEventChain {
public:
    /// Null when nothing was added.
    [[nodiscard]] const HostEvent* head() const {
        return chain_.empty() ? nullptr : reinterpret_cast<const HostEvent*>(chain_.front().data());
    }

    /// Of this length unless told otherwise; the bytes beyond the message are not 0.
    void addMIDI(std::int64_t time, const std::vector<std::uint8_t>& bytes, std::uint8_t cable = 0) {
        auto& event = add(time, 8);
        event.MIDI.length = static_cast<std::uint16_t>(bytes.size());
        event.MIDI.cable = cable;
        std::memset(event.MIDI.data, 0xEE, sizeof event.MIDI.data);
        std::copy_n(bytes.begin(), std::min(bytes.size(), sizeof event.MIDI.data), event.MIDI.data);
    }

    /// An event of a kind that carries no short message.
    void addOther(std::uint8_t type) { add(0, type); }

    /// Packets, each the words of some Universal MIDI Packets.
    void addEventList(std::int64_t time, const std::vector<std::vector<std::uint32_t>>& packets,
                      std::uint8_t cable = 0) {
        auto& event = add(time, 10, sizeof(HostEvent) * (packets.size() + 1));
        event.MIDIEventsList.cable = cable;
        event.MIDIEventsList.eventList.numPackets = static_cast<std::uint32_t>(packets.size());
        auto* packet = &event.MIDIEventsList.eventList.packet[0];
        for (const auto& words : packets) {
            packet->wordCount = static_cast<std::uint32_t>(words.size());
            std::copy(words.begin(), words.end(), packet->words);
            packet = reinterpret_cast<decltype(packet)>(packet->words + words.size());
        }
    }

private:
    HostEvent& add(std::int64_t time, std::uint8_t type, std::size_t size = sizeof(HostEvent)) {
        auto& room = chain_.emplace_back((size + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t));
        auto& event = *reinterpret_cast<HostEvent*>(room.data());
        event.head.eventSampleTime = time;
        event.head.eventType = static_cast<decltype(event.head.eventType)>(type);
        if (chain_.size() > 1) {
            reinterpret_cast<HostEvent*>(chain_[chain_.size() - 2].data())->head.next = &event;
        }
        return event;
    }

    std::deque<std::vector<std::max_align_t>> chain_;
};

}  // namespace quillo::test
