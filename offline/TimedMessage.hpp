// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"

namespace quillo {

/// A message at its place on the host's timeline.
struct TimedMessage {
    SampleTime time = 0;
    MIDIMessage message;

    bool operator==(const TimedMessage&) const = default;
};

}  // namespace quillo
