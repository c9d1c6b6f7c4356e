// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace quillo {

/// Numbers of rules as the user knows them. What no MIDI message can carry is marked "(out of range)".

/// "64".
[[nodiscard]] std::string dataByteWords(unsigned value);

/// "60 (C3)".
[[nodiscard]] std::string noteWords(std::uint8_t note);

/// "7 (Volume)".
[[nodiscard]] std::string controllerWords(std::uint8_t controller);

/// "channel 3" for 2.
[[nodiscard]] std::string channelWords(unsigned zeroBased);

/// The number, marked unless it is in range.
[[nodiscard]] std::string numberWords(std::int64_t value, bool inRange);

}  // namespace quillo
