// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "midi/Status.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The kinds of channel voice messages that a rule can send.
enum class StatusV2 : std::uint8_t { noteOn, noteOff, CC, programChange, channelPressure, pitchWheel };

/// The status bytes on channel value 0, by case order.
inline constexpr std::array statusNibbles{midi::noteOn,        midi::noteOff,         midi::controlChange,
                                          midi::programChange, midi::channelPressure, midi::pitchWheel};

/// The status byte of a kind with channel bits 0.
[[nodiscard]] constexpr std::uint8_t statusNibble(StatusV2 status) QUILLO_REALTIME {
    return statusNibbles[static_cast<std::size_t>(status)];
}

}  // namespace quillo
