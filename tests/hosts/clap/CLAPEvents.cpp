// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPEvents.hpp"

#include <algorithm>
#include <cmath>

namespace quillo::test {

clap_event_transport_t clapTransport(std::uint32_t flags, double positionInFrames, bool beats) {
    constexpr double framesPerBeat = clapSampleRate / 2.0;
    clap_event_transport_t event{};
    event.header = {sizeof(event), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_TRANSPORT, 0};
    event.flags = flags;
    event.tempo = 120.0;
    if (beats) {
        event.flags |= CLAP_TRANSPORT_HAS_BEATS_TIMELINE | CLAP_TRANSPORT_HAS_TEMPO;
        event.song_pos_beats =
            std::llround(positionInFrames / framesPerBeat * static_cast<double>(CLAP_BEATTIME_FACTOR));
    } else {
        event.flags |= CLAP_TRANSPORT_HAS_SECONDS_TIMELINE;
        event.song_pos_seconds =
            std::llround(positionInFrames / clapSampleRate * static_cast<double>(CLAP_SECTIME_FACTOR));
    }
    return event;
}

CLAPEvents::CLAPEvents()
    : list_{this,
            [](const clap_input_events_t* list) {
                return static_cast<std::uint32_t>(static_cast<CLAPEvents*>(list->ctx)->events_.size());
            },
            [](const clap_input_events_t* list, std::uint32_t index) {
                const auto& event = static_cast<CLAPEvents*>(list->ctx)->events_.at(index);
                return event.empty() ? nullptr : reinterpret_cast<const clap_event_header_t*>(event.data());
            }} {}

void CLAPEvents::addMIDI(std::uint32_t time, const Bytes& bytes, std::uint16_t port) {
    if (bytes[0] == 0xF0) {
        const auto& kept = systemExclusive_.emplace_back(bytes);
        auto event = made<clap_event_midi_sysex_t>(CLAP_EVENT_MIDI_SYSEX, time);
        event.port_index = port;
        event.buffer = kept.data();
        event.size = static_cast<std::uint32_t>(kept.size());
        add(event);
        return;
    }
    auto event = made<clap_event_midi_t>(CLAP_EVENT_MIDI, time);
    event.port_index = port;
    std::ranges::copy(bytes, event.data);
    add(event);
}

void CLAPEvents::addNote(std::uint16_t type, std::uint32_t time, int channel, int key, double velocity,
                         std::int32_t id, int port) {
    auto event = made<clap_event_note_t>(type, time);
    event.note_id = id;
    event.port_index = static_cast<std::int16_t>(port);
    event.channel = static_cast<std::int16_t>(channel);
    event.key = static_cast<std::int16_t>(key);
    event.velocity = velocity;
    add(event);
}

void CLAPEvents::addExpression(std::int32_t expression, std::uint32_t time, int channel, int key,
                               double value, std::int32_t id, int port) {
    auto event = made<clap_event_note_expression_t>(CLAP_EVENT_NOTE_EXPRESSION, time);
    event.expression_id = expression;
    event.note_id = id;
    event.port_index = static_cast<std::int16_t>(port);
    event.channel = static_cast<std::int16_t>(channel);
    event.key = static_cast<std::int16_t>(key);
    event.value = value;
    add(event);
}

void CLAPEvents::addTransport(std::uint32_t time, clap_event_transport_t event) {
    event.header.time = time;
    add(event);
}

}  // namespace quillo::test
