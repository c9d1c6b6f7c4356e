// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "log/EventLogEntry.hpp"

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

/// What a MIDI message is, by the names of its parts: "note-on 60 (C3), velocity 100, channel 1". Empty for
/// bytes that are no complete message.
[[nodiscard]] std::string messageWords(std::span<const std::uint8_t> bytes);

/// A line of a trace: the entry as the editor's log shows it and then, for a message, its words:
/// `[10] 90 3c 64        note-on 60 (C3), velocity 100, channel 1`.
[[nodiscard]] std::string traceLine(const EventLogEntry& entry);

}  // namespace quillo
