// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "midifile/MIDIFile.hpp"

namespace quillo {

/// Our own four bars for the demo: piano, bass, flute and drums over a change of tempo, with pedal,
/// modulation wheel, pitch bends, program changes, markers and a MIDI Start. Nothing in it is random: the
/// same song comes out each time.
[[nodiscard]] MIDIFile demoSong();

}  // namespace quillo
