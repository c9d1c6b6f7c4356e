// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/MIDIFile.hpp"

#include <algorithm>
#include <utility>

#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

bool beginsWithTempo(const MIDITrack& track) {
    return std::ranges::any_of(track.events,
                               [](const MIDIFileEvent& event) { return event.tick == 0 && tempoOf(event); });
}

MIDIFileEvent initialTempoAt(Tick tick) {
    return {tick,
            MIDIFileEvent::Kind::meta,
            {metaTempo, initialTempo >> 16U, initialTempo >> 8U & 0xFFU, initialTempo & 0xFFU}};
}

MIDITrack inSequence(const std::vector<MIDITrack>& tracks) {
    MIDITrack all;
    bool isTempoSet = false;
    for (const auto& track : tracks) {
        if (isTempoSet && !beginsWithTempo(track)) {
            all.events.push_back(initialTempoAt(all.endTick));
        }
        for (const auto& event : track.events) {
            all.events.push_back({all.endTick + event.tick, event.kind, event.bytes});
            isTempoSet = isTempoSet || tempoOf(event);
        }
        all.endTick += track.endTick;
    }
    return all;
}

}  // namespace

std::optional<std::uint32_t> tempoOf(const MIDIFileEvent& event) {
    const auto& bytes = event.bytes;
    if (event.kind != MIDIFileEvent::Kind::meta || bytes.size() < 4 || bytes[0] != metaTempo) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(bytes[1] << 16 | bytes[2] << 8 | bytes[3]);
}

MIDITrack merged(const std::vector<MIDITrack>& tracks) {
    MIDITrack all;
    for (const auto& track : tracks) {
        all.events.insert(all.events.end(), track.events.begin(), track.events.end());
        all.endTick = std::max(all.endTick, track.endTick);
    }
    all.events = inStableOrder(std::move(all.events), &MIDIFileEvent::tick);
    return all;
}

MIDITrack asOneTrack(const MIDIFile& file) {
    constexpr std::uint16_t ofIndependentTracks = 2;
    return file.format == ofIndependentTracks ? inSequence(file.tracks) : merged(file.tracks);
}

}  // namespace quillo
