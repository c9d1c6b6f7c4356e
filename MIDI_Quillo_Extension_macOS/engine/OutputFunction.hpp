// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// Where the processor's messages go: sample time, virtual cable (always 0) and the messages of one output,
/// in order. A status other than `noErr` ends the cycle.
using OutputFunction =
    RealTimeFunctionRef<OSStatus(SampleTime time, std::uint8_t cable, std::span<const MIDIMessage> messages)>;

}  // namespace quillo
