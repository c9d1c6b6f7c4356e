// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "midifile/MIDIFile.hpp"

namespace quillo {

/// The bytes of a Standard MIDI File with exactly these tracks and events: a status byte for each message, no
/// running status, and End of Track at each track's `endTick`.
///
/// Throws a `MIDIFileError` for what the format cannot say: more than 268,435,455 ticks between an event and
/// the next, or a track or an event that is longer than its length field counts.
[[nodiscard]] std::vector<std::uint8_t> writeMIDIFile(const MIDIFile& file);

}  // namespace quillo
