// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "log/EventLogEntry.hpp"

namespace quillo {

/// What a MIDI message is, by the names of its parts: "note-on 60 (C3), velocity 100, channel 1". Empty for
/// bytes that are no complete message.
[[nodiscard]] std::string messageWords(std::span<const std::uint8_t> bytes);

/// A line of a trace: the entry as the editor's log shows it and then, for a message, its words:
/// `[10] 90 3c 64        note-on 60 (C3), velocity 100, channel 1`.
[[nodiscard]] std::string traceLine(const EventLogEntry& entry);

}  // namespace quillo
