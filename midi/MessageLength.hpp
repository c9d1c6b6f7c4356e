// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "midi/Status.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

namespace midi {

/// Of messages whose status byte is 8n to En, then F0 to FF; 0 where there is no such length.
inline constexpr std::array<std::uint8_t, 7> channelLengths{3, 3, 3, 3, 2, 2, 3};
inline constexpr std::array<std::uint8_t, 16> systemLengths{0, 2, 3, 2, 0, 0, 1, 0, 1, 0, 1, 1, 1, 0, 1, 1};

}  // namespace midi

/// How many bytes a MIDI message with this status byte has, the status byte included (MIDI 1.0). 0 for what
/// begins no message of a fixed length: a data byte, either end of system exclusive, an undefined status.
[[nodiscard]] constexpr std::size_t messageLength(std::uint8_t status) QUILLO_REALTIME {
    if (midi::isData(status)) {
        return 0;
    }
    return midi::isSystem(status) ? midi::systemLengths[status - midi::systemExclusive]
                                  : midi::channelLengths[(status - midi::noteOff) / 16U];
}

/// Whether the bytes are exactly one message that is not system exclusive: a status byte and as many data
/// bytes, each below 128, as belong to it.
[[nodiscard]] bool isCompleteShortMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

/// Whether the bytes are exactly one channel voice message, the only kind that stands bare in a MIDI file.
[[nodiscard]] bool isCompleteChannelMessage(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

}  // namespace quillo
