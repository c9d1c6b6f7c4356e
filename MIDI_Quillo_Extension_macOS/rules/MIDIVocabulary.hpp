// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rules/MIDIRuleType.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleTriggerV2.hpp"

/// The names under which the editor shows MIDI numbers. Display text only: nothing here takes part in
/// matching or sending. Each list is made on first use and then shared; the order is the order on screen.
namespace quillo {

/// One row of a menu.
template <class Value>
struct MenuItem {
    Value value;
    std::string label;

    bool operator==(const MenuItem&) const = default;
};

template <class Value>
using Menu = std::vector<MenuItem<Value>>;

/// The word for `AnyValue`.
inline constexpr std::string_view anyLabel = "Any";
/// The words for `RespectiveTriggerByte` and `TriggerChannel`.
inline constexpr std::string_view fromTriggerLabel = "From Trigger";
inline constexpr std::string_view channelCaption = "Ch";
inline constexpr std::string_view valueCaption = "Value";
inline constexpr std::string_view triggerCaption = "Trigger";
inline constexpr std::string_view messageCaption = "Message";
inline constexpr std::string_view delayCaption = "Delay (ms)";
inline constexpr std::string_view nameCaption = "Message name";

/// The name of a controller, 0 to 127: "Volume" for 7.
[[nodiscard]] std::string_view controllerName(std::uint8_t controller);

/// The 128 controllers: "7 : Volume".
[[nodiscard]] const Menu<std::uint8_t>& controllerMenu();

/// A note, 0 to 127: "C3" for 60. Sharps are U+266F; there are no flats.
[[nodiscard]] std::string noteName(std::uint8_t note);

/// The same behind its number: "60 (C3)".
[[nodiscard]] std::string noteLabel(std::uint8_t note);

/// "Any" and the notes from 127 down to 0.
[[nodiscard]] const Menu<TriggerValueV2>& triggerNoteMenu();

/// A zero-based channel as it is shown: "1" to "16".
[[nodiscard]] std::string channelLabel(std::uint8_t zeroBased);

/// "Any" and the channels 1 to 16.
[[nodiscard]] const Menu<TriggerValueV2>& triggerChannelMenu();

/// What new rules send.
[[nodiscard]] const Menu<MIDIRuleType>& outputTypeMenu();

/// What rules are fired by: the host's transport stands before MIDI's.
[[nodiscard]] const Menu<TriggerEntryType>& triggerTypeMenu();

[[nodiscard]] const Menu<PassThroughV2>& passThroughMenu();

}  // namespace quillo
