// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "log/EventLogEntry.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// The first cycle after the plug-in was loaded.
struct PluginLoad {
    bool operator==(const PluginLoad&) const = default;
};

/// An event that the user asks about: an incoming message (which may be system exclusive), a change of the
/// host's transport, or loading.
using AskedEvent = std::variant<MIDIMessage, HostTransportTriggerVariantsV2, PluginLoad>;

/// What the log's entry records, to be asked about.
[[nodiscard]] AskedEvent askedEvent(const EventLogEntryVariants& entry);

/// "90 3c 64: note-on 60 (C3), velocity 100, channel 1", "host start: the host's transport starts".
[[nodiscard]] std::string eventWords(const AskedEvent& event);

/// A message's bytes, of a long one its first: "f0 7e 7f ... (300 bytes)".
[[nodiscard]] std::string shownBytes(const MIDIMessage& message);

/// A text that is no event; says what is wrong with it.
class AskedEventError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The forms that an event can have, in one or more lines.
inline constexpr std::string_view askedEventForms =
    "An event is one MIDI message in hexadecimal, in quotes if it has blanks: \"90 3c 64\"\n"
    "or 903c64, or one of \"host start\", \"host continue\", \"host stop\", load.";

/// Reads an event: the bytes of one complete MIDI message in hexadecimal, with blanks between them or
/// without, or "host start", "host continue", "host stop" ("transport" will do for "host") or "load". Upper
/// and lower case mean the same. System exclusive is any text that begins with f0. Throws an
/// `AskedEventError`.
[[nodiscard]] AskedEvent parseAskedEvent(std::string_view text);

/// The bytes alone, at least one, of any value. Throws an `AskedEventError`.
[[nodiscard]] std::vector<std::uint8_t> parseBytes(std::string_view text);

}  // namespace quillo
