// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryRules.hpp"

#include <span>

#include "midi/Status.hpp"

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr unsigned bitsPerDataByte = 7;

/// A trigger on the channel of a message.
RuleTriggerEntry triggerOf(TriggerEntryType type, std::uint8_t status) {
    RuleTriggerEntry trigger;
    trigger.type = type;
    trigger.channel = TriggerValueV2::Value{static_cast<std::uint8_t>(status & midi::channelMask)};
    return trigger;
}

RuleTriggerEntry noteTrigger(TriggerEntryType type, Bytes bytes) {
    auto trigger = triggerOf(type, bytes[0]);
    trigger.note = TriggerValueV2::Value{bytes[1]};
    return trigger;
}

RuleTriggerEntry controllerTrigger(Bytes bytes) {
    auto trigger = triggerOf(TriggerEntryType::ControlChange, bytes[0]);
    trigger.controller = bytes[1];
    trigger.controllerValue = TriggerValueV2::Value{bytes[2]};
    return trigger;
}

RuleTriggerEntry programTrigger(Bytes bytes) {
    auto trigger = triggerOf(TriggerEntryType::ProgramChange, bytes[0]);
    trigger.program = TriggerValueV2::Value{bytes[1]};
    return trigger;
}

/// A trigger that waits for a command and nothing about it.
RuleTriggerEntry commandTrigger(TriggerEntryType type) {
    RuleTriggerEntry trigger;
    trigger.type = type;
    return trigger;
}

std::optional<RuleTriggerEntry> systemTrigger(std::uint8_t status) {
    switch (status) {
    case midi::startCommand: return commandTrigger(TriggerEntryType::MIDIStart);
    case midi::continueCommand: return commandTrigger(TriggerEntryType::MIDIContinue);
    case midi::stopCommand: return commandTrigger(TriggerEntryType::MIDIStop);
    default: return std::nullopt;
    }
}

std::optional<RuleTriggerEntry> messageTrigger(Bytes bytes) {
    switch (bytes[0] & midi::kindMask) {
    case midi::noteOn: return noteTrigger(TriggerEntryType::NoteOn, bytes);
    case midi::noteOff: return noteTrigger(TriggerEntryType::NoteOff, bytes);
    case midi::controlChange: return controllerTrigger(bytes);
    case midi::programChange: return programTrigger(bytes);
    default: return systemTrigger(bytes[0]);
    }
}

RuleTriggerEntry transportTrigger(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return commandTrigger(TriggerEntryType::HostStart);
    case HostTransportTriggerVariantsV2::Continue: return commandTrigger(TriggerEntryType::HostContinue);
    case HostTransportTriggerVariantsV2::Stop: break;
    }
    return commandTrigger(TriggerEntryType::HostStop);
}

/// An output on the channel of a message.
RuleOutputEntry outputOf(OutputEntryType type, std::uint8_t status) {
    RuleOutputEntry output;
    output.type = type;
    output.channel = RuleOutputChannelV2::Value{static_cast<std::uint8_t>(status & midi::channelMask)};
    return output;
}

RuleOutputEntry noteOutput(OutputEntryType type, Bytes bytes) {
    auto output = outputOf(type, bytes[0]);
    output.note = GenericByteV2::Value{bytes[1]};
    output.velocity = GenericByteV2::Value{bytes[2]};
    return output;
}

RuleOutputEntry controllerOutput(Bytes bytes) {
    auto output = outputOf(OutputEntryType::ControlChange, bytes[0]);
    output.controller = GenericByteV2::Value{bytes[1]};
    output.controllerValue = GenericByteV2::Value{bytes[2]};
    return output;
}

RuleOutputEntry programOutput(Bytes bytes) {
    auto output = outputOf(OutputEntryType::ProgramChange, bytes[0]);
    output.program = GenericByteV2::Value{bytes[1]};
    return output;
}

RuleOutputEntry pressureOutput(Bytes bytes) {
    auto output = outputOf(OutputEntryType::ChannelPressure, bytes[0]);
    output.pressure = bytes[1];
    return output;
}

RuleOutputEntry pitchOutput(Bytes bytes) {
    auto output = outputOf(OutputEntryType::PitchWheel, bytes[0]);
    output.pitch.value = static_cast<std::uint16_t>(bytes[1] | unsigned{bytes[2]} << bitsPerDataByte);
    return output;
}

RuleOutputEntry systemExclusiveOutput(Bytes bytes) {
    const auto body = bytes.subspan(1, bytes.size() - 2);
    RuleOutputEntry output;
    output.type = OutputEntryType::SystemExclusive;
    output.systemExclusive = {body.begin(), body.end()};
    return output;
}

std::optional<RuleOutputEntry> messageOutput(Bytes bytes) {
    switch (bytes[0] & midi::kindMask) {
    case midi::noteOn: return noteOutput(OutputEntryType::NoteOn, bytes);
    case midi::noteOff: return noteOutput(OutputEntryType::NoteOff, bytes);
    case midi::controlChange: return controllerOutput(bytes);
    case midi::programChange: return programOutput(bytes);
    case midi::channelPressure: return pressureOutput(bytes);
    case midi::pitchWheel: return pitchOutput(bytes);
    default: break;
    }
    return midi::isSystemExclusive(bytes) ? std::optional(systemExclusiveOutput(bytes)) : std::nullopt;
}

}  // namespace

std::optional<RuleTriggerEntry> triggerFor(const EventLogEntryVariants& event) {
    const auto* host = event.host();
    return host != nullptr ? transportTrigger(host->trigger) : messageTrigger(event.midi()->message.bytes());
}

std::optional<RuleOutputEntry> outputFor(const EventLogEntryVariants& event) {
    const auto* message = event.midi();
    return message != nullptr ? messageOutput(message->message.bytes()) : std::nullopt;
}

}  // namespace quillo
