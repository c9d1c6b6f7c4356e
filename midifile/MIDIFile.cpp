// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/MIDIFile.hpp"

#include <algorithm>
#include <utility>

#include "platform/InStableOrder.hpp"

namespace quillo {

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

}  // namespace quillo
