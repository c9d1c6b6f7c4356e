// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "midifile/MIDIFile.hpp"

namespace quillo {

/// Reads a Standard MIDI File, in the order and with the bytes that it has. It may be wrapped in a RIFF file
/// of the type RMID.
///
/// What is damaged throws a `MIDIFileError` with the byte position. Tolerated, because files like these exist
/// and can mean only one thing: chunks of unknown types, a header longer than needed, a track without End of
/// Track (it ends with its chunk), bytes after End of Track or after the last track, and running status that
/// goes on behind a meta or system-exclusive event.
[[nodiscard]] MIDIFile readMIDIFile(std::span<const std::uint8_t> bytes);

}  // namespace quillo
