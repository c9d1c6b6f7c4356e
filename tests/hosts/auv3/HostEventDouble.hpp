// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// The platform's render events, laid out as it lays them out.
namespace quillo::test {

#pragma pack(push, 4)

struct HostPacket {
    std::uint64_t timeStamp;
    std::uint32_t wordCount;
    std::uint32_t words[64];
};

struct HostPacketList {
    std::int32_t protocol;
    std::uint32_t numPackets;
    HostPacket packet[1];
};

union HostEvent;

struct HostEventHeader {
    HostEvent* next;
    std::int64_t eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
};

struct HostMIDIEvent {
    HostEvent* next;
    std::int64_t eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
    std::uint16_t length;
    std::uint8_t cable;
    std::uint8_t data[3];
};

struct HostEventList {
    HostEvent* next;
    std::int64_t eventSampleTime;
    std::uint8_t eventType;
    std::uint8_t reserved;
    std::uint8_t cable;
    HostPacketList eventList;
};

union HostEvent {
    HostEventHeader head;
    HostMIDIEvent MIDI;
    HostEventList MIDIEventsList;
};

#pragma pack(pop)

}  // namespace quillo::test
