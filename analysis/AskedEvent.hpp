// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <variant>

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

}  // namespace quillo
