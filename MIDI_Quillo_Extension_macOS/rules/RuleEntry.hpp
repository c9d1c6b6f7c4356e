// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleOutputV2.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// What a rule sends, in the order of the editor's menu.
enum class OutputEntryType : std::uint8_t {
    NoteOn,
    NoteOff,
    ControlChange,
    ProgramChange,
    ChannelPressure,
    PitchWheel,
    SystemExclusive,
};

/// What makes a rule fire.
enum class TriggerEntryType : std::uint8_t {
    OnLoad,
    NoteOn,
    NoteOff,
    ControlChange,
    ProgramChange,
    MIDIStart,
    MIDIContinue,
    MIDIStop,
    HostStart,
    HostContinue,
    HostStop,
};

/// A position of the pitch wheel: 0 to 16383, 8192 in the centre.
struct Pitch {
    std::uint16_t value = 8192;

    bool operator==(const Pitch&) const = default;
};

/// The output of a rule as the editor holds it: every field of every kind of message at once, so that
/// changing the kind loses nothing that was typed. The values here are the defaults of all new rules, and
/// what a field falls back to when its trigger cannot feed it any more.
struct RuleOutputEntry {
    OutputEntryType type = OutputEntryType::NoteOn;
    RuleOutputChannelV2 channel = RuleOutputChannelV2::Value{0};  ///< zero-based
    GenericByteV2 note = GenericByteV2::Value{60};
    GenericByteV2 velocity = GenericByteV2::Value{64};
    Pitch pitch;
    std::uint8_t bank = 0;
    GenericByteV2 program = GenericByteV2::Value{0};
    std::uint8_t pressure = 0;
    GenericByteV2 controller = GenericByteV2::Value{0};
    GenericByteV2 controllerValue = GenericByteV2::Value{0};
    std::vector<std::uint8_t> systemExclusive;  ///< the body as typed; the engine frames it
    DelayV2 delay;

    bool operator==(const RuleOutputEntry&) const = default;
};

/// The trigger of a rule as the editor holds it. The values here are the defaults of all new rules.
struct RuleTriggerEntry {
    TriggerEntryType type = TriggerEntryType::OnLoad;
    TriggerValueV2 channel = TriggerValueV2::AnyValue{};  ///< zero-based
    TriggerValueV2 note = TriggerValueV2::AnyValue{};
    std::uint8_t controller = 0;
    TriggerValueV2 controllerValue = TriggerValueV2::AnyValue{};
    TriggerValueV2 program = TriggerValueV2::AnyValue{};
    PassThroughV2 passThrough = PassThroughV2::PassThrough;

    bool operator==(const RuleTriggerEntry&) const = default;
};

/// A rule as the editor holds it: flat and always complete. Every entry is a rule; a few rules that only a
/// program could write are no entry (see `whyNoEntry`).
struct RuleEntry {
    RuleOutputEntry output;
    RuleTriggerEntry trigger;
    std::string name;

    bool operator==(const RuleEntry&) const = default;
};

/// The entry of a new rule that sends `type`: all defaults, named "Message #" and `index`.
[[nodiscard]] RuleEntry defaultEntry(OutputEntryType type, std::int64_t index);

/// The rule that an entry stands for. Fields that its types do not use are left out.
[[nodiscard]] Rule ruleFromEntry(const RuleEntry& entry);

/// Why the editor cannot hold a rule; nothing when it can. It cannot hold a pressure or a pitch that is
/// copied from the trigger, nor a note, control change or pitch wheel without its second data byte.
[[nodiscard]] std::optional<std::string> whyNoEntry(const Rule& rule);

/// What becomes of a rule's message, beyond what the user does, when the editor changes it: an entry cannot
/// hold all that such a message sends. Nothing when it can, and for a rule that is no entry.
[[nodiscard]] std::optional<std::string> whatEditingChanges(const Rule& rule);

/// The entry that stands for a rule; fields that the rule does not carry have their defaults. A rule that the
/// editor cannot hold is a fatal error: ask `whyNoEntry` first.
[[nodiscard]] RuleEntry entryFromRule(const Rule& rule);

}  // namespace quillo

template <>
struct std::hash<quillo::Pitch> {
    std::size_t operator()(quillo::Pitch pitch) const noexcept {
        return std::hash<std::uint16_t>()(pitch.value);
    }
};
