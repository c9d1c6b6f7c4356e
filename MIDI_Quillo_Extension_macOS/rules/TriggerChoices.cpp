// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

/// The field's value, or its default when it is copied from a trigger that cannot feed it.
void keepUsable(GenericByteV2& field, const GenericByteV2& fallback, bool offered) {
    if (!offered && field.isCopied()) {
        field = fallback;
    }
}

bool isNote(OutputEntryType type) {
    return type == OutputEntryType::NoteOn || type == OutputEntryType::NoteOff;
}

}  // namespace

TriggerChoices triggerChoices(TriggerEntryType trigger) {
    switch (trigger) {
    case TriggerEntryType::NoteOn:
    case TriggerEntryType::NoteOff: return {.channel = true, .noteAndVelocity = true};
    case TriggerEntryType::ControlChange: return {.channel = true, .controllerAndValue = true};
    case TriggerEntryType::ProgramChange: return {.channel = true, .program = true};
    case TriggerEntryType::OnLoad:
    case TriggerEntryType::MIDIStart:
    case TriggerEntryType::MIDIContinue:
    case TriggerEntryType::MIDIStop:
    case TriggerEntryType::HostStart:
    case TriggerEntryType::HostContinue:
    case TriggerEntryType::HostStop: break;
    }
    return {};
}

bool hasChannel(OutputEntryType output) {
    return output != OutputEntryType::SystemExclusive;
}

RuleEntry withUsableChoices(TriggerEntryType newType, RuleEntry entry) {
    const auto offered = triggerChoices(newType);
    const RuleOutputEntry defaults;
    auto& output = entry.output;
    if (!offered.channel && hasChannel(output.type) &&
        output.channel.is<RuleOutputChannelV2::TriggerChannel>()) {
        output.channel = defaults.channel;
    }
    if (isNote(output.type)) {
        keepUsable(output.note, defaults.note, offered.noteAndVelocity);
        keepUsable(output.velocity, defaults.velocity, offered.noteAndVelocity);
    } else if (output.type == OutputEntryType::ControlChange) {
        keepUsable(output.controller, defaults.controller, offered.controllerAndValue);
        keepUsable(output.controllerValue, defaults.controllerValue, offered.controllerAndValue);
    } else if (output.type == OutputEntryType::ProgramChange) {
        keepUsable(output.program, defaults.program, offered.program);
    }
    return entry;
}

bool isFixed(const RuleOutputEntry& output) {
    const bool fixedChannel =
        !hasChannel(output.type) || !output.channel.is<RuleOutputChannelV2::TriggerChannel>();
    switch (output.type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff:
        return fixedChannel && !output.note.isCopied() && !output.velocity.isCopied();
    case OutputEntryType::ControlChange:
        return fixedChannel && !output.controller.isCopied() && !output.controllerValue.isCopied();
    case OutputEntryType::ProgramChange: return fixedChannel && !output.program.isCopied();
    case OutputEntryType::ChannelPressure:
    case OutputEntryType::PitchWheel:
    case OutputEntryType::SystemExclusive: break;
    }
    return fixedChannel;
}

}  // namespace quillo
