// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/RealTime.hpp"

namespace quillo {

/// The kinds of channel voice messages that a rule can send.
enum class StatusV2 : std::uint8_t { noteOn, noteOff, CC, programChange, channelPressure, pitchWheel };

/// The status bytes on channel value 0, by case order (MIDI 1.0, channel voice messages).
inline constexpr std::array<std::uint8_t, 6> statusNibbles{0x90, 0x80, 0xB0, 0xC0, 0xD0, 0xE0};

/// The status byte of a kind with channel bits 0.
[[nodiscard]] constexpr std::uint8_t statusNibble(StatusV2 status) QUILLO_REALTIME {
    return statusNibbles[static_cast<std::size_t>(status)];
}

}  // namespace quillo
