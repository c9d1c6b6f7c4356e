// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "platform/RealTime.hpp"

/// The bytes of MIDI 1.0 messages: which begin one, and which are data.
namespace quillo::midi {

/// Channel voice messages, on channel value 0.
inline constexpr std::uint8_t noteOff = 0x80;
inline constexpr std::uint8_t noteOn = 0x90;
inline constexpr std::uint8_t notePressure = 0xA0;
inline constexpr std::uint8_t controlChange = 0xB0;
inline constexpr std::uint8_t programChange = 0xC0;
inline constexpr std::uint8_t channelPressure = 0xD0;
inline constexpr std::uint8_t pitchWheel = 0xE0;

/// System messages. The bytes that are missing here are undefined.
inline constexpr std::uint8_t systemExclusive = 0xF0;
inline constexpr std::uint8_t timeCode = 0xF1;
inline constexpr std::uint8_t songPosition = 0xF2;
inline constexpr std::uint8_t songSelect = 0xF3;
inline constexpr std::uint8_t tuneRequest = 0xF6;
inline constexpr std::uint8_t endOfExclusive = 0xF7;
inline constexpr std::uint8_t timingClock = 0xF8;
inline constexpr std::uint8_t startCommand = 0xFA;
inline constexpr std::uint8_t continueCommand = 0xFB;
inline constexpr std::uint8_t stopCommand = 0xFC;
inline constexpr std::uint8_t activeSensing = 0xFE;
inline constexpr std::uint8_t systemReset = 0xFF;

/// What is not the channel in the status byte of a channel voice message, and what is.
inline constexpr std::uint8_t kindMask = 0xF0;
inline constexpr std::uint8_t channelMask = 0x0F;

inline constexpr std::uint8_t greatestDataByte = 127;

[[nodiscard]] constexpr bool isData(std::uint8_t byte) QUILLO_REALTIME {
    return byte <= greatestDataByte;
}

/// Whether it is a status byte that has no channel.
[[nodiscard]] constexpr bool isSystem(std::uint8_t byte) QUILLO_REALTIME {
    return byte >= systemExclusive;
}

/// Whether it is a message by itself, which may stand in the middle of others.
[[nodiscard]] constexpr bool isRealTime(std::uint8_t byte) QUILLO_REALTIME {
    return byte >= timingClock;
}

/// Whether the bytes begin as system exclusive does; they may lack its end.
[[nodiscard]] constexpr bool isSystemExclusive(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    return !bytes.empty() && bytes.front() == systemExclusive;
}

}  // namespace quillo::midi
