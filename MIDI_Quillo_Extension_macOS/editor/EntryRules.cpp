// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryRules.hpp"

#include <cstddef>
#include <span>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr unsigned bitsPerDataByte = 7;

std::uint8_t channelOf(Bytes bytes) {
    return static_cast<std::uint8_t>(bytes[0] & midi::channelMask);
}

std::optional<TriggerEntryType> triggerTypeOf(std::uint8_t status) {
    switch (status & midi::kindMask) {
    case midi::noteOn: return TriggerEntryType::NoteOn;
    case midi::noteOff: return TriggerEntryType::NoteOff;
    case midi::controlChange: return TriggerEntryType::ControlChange;
    case midi::programChange: return TriggerEntryType::ProgramChange;
    default: break;
    }
    switch (status) {
    case midi::startCommand: return TriggerEntryType::MIDIStart;
    case midi::continueCommand: return TriggerEntryType::MIDIContinue;
    case midi::stopCommand: return TriggerEntryType::MIDIStop;
    default: return std::nullopt;
    }
}

TriggerEntryType triggerTypeOf(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return TriggerEntryType::HostStart;
    case HostTransportTriggerVariantsV2::Continue: return TriggerEntryType::HostContinue;
    case HostTransportTriggerVariantsV2::Stop: break;
    }
    return TriggerEntryType::HostStop;
}

/// A command has no channel, and nothing else that a rule could wait for.
RuleTriggerEntry triggerOf(TriggerEntryType type, Bytes bytes = {}) {
    RuleTriggerEntry trigger;
    trigger.type = type;
    const auto compared = comparedField(type);
    if (compared == nullptr) {
        return trigger;
    }
    const bool isController = type == TriggerEntryType::ControlChange;
    trigger.channel = TriggerValueV2::Value{channelOf(bytes)};
    trigger.controller = isController ? bytes[1] : trigger.controller;
    trigger.*compared = TriggerValueV2::Value{bytes[isController ? 2 : 1]};
    return trigger;
}

std::optional<OutputEntryType> outputTypeOf(Bytes bytes) {
    if (midi::isSystemExclusive(bytes) && bytes.back() == midi::endOfExclusive) {
        return OutputEntryType::SystemExclusive;
    }
    if (!isCompleteShortMessage(bytes)) {
        return std::nullopt;
    }
    switch (bytes[0] & midi::kindMask) {
    case midi::noteOn: return OutputEntryType::NoteOn;
    case midi::noteOff: return OutputEntryType::NoteOff;
    case midi::controlChange: return OutputEntryType::ControlChange;
    case midi::programChange: return OutputEntryType::ProgramChange;
    case midi::channelPressure: return OutputEntryType::ChannelPressure;
    case midi::pitchWheel: return OutputEntryType::PitchWheel;
    default: return std::nullopt;
    }
}

RuleOutputEntry outputOf(OutputEntryType type, Bytes bytes) {
    RuleOutputEntry output;
    output.type = type;
    const auto value = [bytes](std::size_t position) { return GenericByteV2::Value{bytes[position]}; };
    if (type != OutputEntryType::SystemExclusive) {
        output.channel = RuleOutputChannelV2::Value{channelOf(bytes)};
    }
    switch (type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff:
        output.note = value(1);
        output.velocity = value(2);
        break;
    case OutputEntryType::ControlChange:
        output.controller = value(1);
        output.controllerValue = value(2);
        break;
    case OutputEntryType::ProgramChange: output.program = value(1); break;
    case OutputEntryType::ChannelPressure: output.pressure = bytes[1]; break;
    case OutputEntryType::PitchWheel:
        output.pitch.value = static_cast<std::uint16_t>(bytes[1] | unsigned{bytes[2]} << bitsPerDataByte);
        break;
    case OutputEntryType::SystemExclusive:
        output.systemExclusive.assign(bytes.begin() + 1, bytes.end() - 1);
        break;
    }
    return output;
}

}  // namespace

std::optional<RuleTriggerEntry> triggerFor(const EventLogEntryVariants& event) {
    if (const auto* host = event.host()) {
        return triggerOf(triggerTypeOf(host->trigger));
    }
    const auto bytes = event.midi()->message.bytes();
    const auto type = isCompleteShortMessage(bytes) ? triggerTypeOf(bytes[0]) : std::nullopt;
    return type ? std::optional(triggerOf(*type, bytes)) : std::nullopt;
}

std::optional<RuleOutputEntry> outputFor(const EventLogEntryVariants& event) {
    const auto* message = event.midi();
    const auto type = message != nullptr ? outputTypeOf(message->message.bytes()) : std::nullopt;
    return type ? std::optional(outputOf(*type, message->message.bytes())) : std::nullopt;
}

}  // namespace quillo
