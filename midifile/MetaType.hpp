// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// What a meta event begins with in a file. On a wire the same byte resets the system.
inline constexpr std::uint8_t metaStatus = 0xFF;

/// The meta events that the program knows by their type; all others it keeps as they are.
inline constexpr std::uint8_t metaTrackName = 0x03;
inline constexpr std::uint8_t metaMarker = 0x06;
inline constexpr std::uint8_t metaEndOfTrack = 0x2F;
inline constexpr std::uint8_t metaTempo = 0x51;          ///< three bytes: microseconds per quarter note
inline constexpr std::uint8_t metaTimeSignature = 0x58;  ///< numerator, power of two of the denominator, ...
inline constexpr std::uint8_t metaKeySignature = 0x59;   ///< sharps (negative: flats), 1 for minor

}  // namespace quillo
