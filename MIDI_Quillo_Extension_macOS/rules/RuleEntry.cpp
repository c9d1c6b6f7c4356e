// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleEntry.hpp"

#include <variant>

#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr unsigned dataMask = 0x7F;
constexpr unsigned bitsPerDataByte = 7;
constexpr int secondByteWeight = 128;

using Output = RuleOutputVariantsV2;
using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Transport = HostTransportTriggerVariantsV2;

GenericByteV2 fixedByte(unsigned value) {
    return GenericByteV2::Value{static_cast<std::uint8_t>(value)};
}

Output onChannel(StatusV2 status, const RuleOutputEntry& entry, GenericByteV2 byte1,
                 std::optional<GenericByteV2> byte2) {
    return Output::Protocol{StatusByteV2::WithChannel{status, entry.channel}, byte1, byte2};
}

Output messageFromEntry(const RuleOutputEntry& entry) {
    const unsigned pitch = entry.pitch.value;
    switch (entry.type) {
    case OutputEntryType::NoteOn: return onChannel(StatusV2::noteOn, entry, entry.note, entry.velocity);
    case OutputEntryType::NoteOff: return onChannel(StatusV2::noteOff, entry, entry.note, entry.velocity);
    case OutputEntryType::ControlChange:
        return onChannel(StatusV2::CC, entry, entry.controller, entry.controllerValue);
    case OutputEntryType::ProgramChange:
        return Output::ProgramChange{entry.channel, entry.bank, entry.program};
    case OutputEntryType::ChannelPressure:
        return onChannel(StatusV2::channelPressure, entry, fixedByte(entry.pressure), std::nullopt);
    case OutputEntryType::PitchWheel:
        return onChannel(StatusV2::pitchWheel, entry, fixedByte(pitch & dataMask),
                         fixedByte((pitch >> bitsPerDataByte) & dataMask));
    case OutputEntryType::SystemExclusive: break;
    }
    return Output::SystemExclusive{entry.systemExclusive};
}

RuleTriggerV2 voiceTrigger(const Voice& kind, const RuleTriggerEntry& entry) {
    return RuleTriggerV2::MessageBased{{Message::VoiceCategory{{kind, entry.channel}}, entry.passThrough}};
}

RuleTriggerV2 messageTrigger(const Message& message, const RuleTriggerEntry& entry) {
    return RuleTriggerV2::MessageBased{{message, entry.passThrough}};
}

RuleTriggerV2 hostTrigger(Transport transport, const RuleTriggerEntry& entry) {
    return RuleTriggerV2::HostTransport{{transport, entry.passThrough}};
}

RuleTriggerV2 triggerFromEntry(const RuleTriggerEntry& entry) {
    switch (entry.type) {
    case TriggerEntryType::NoteOn: return voiceTrigger(Voice::NoteOn{entry.note}, entry);
    case TriggerEntryType::NoteOff: return voiceTrigger(Voice::NoteOff{entry.note}, entry);
    case TriggerEntryType::ControlChange:
        return voiceTrigger(Voice::ControlChange{entry.controller, entry.controllerValue}, entry);
    case TriggerEntryType::ProgramChange: return voiceTrigger(Voice::ProgramChange{entry.program}, entry);
    case TriggerEntryType::MIDIStart: return messageTrigger(Message::Start{}, entry);
    case TriggerEntryType::MIDIContinue: return messageTrigger(Message::Continue{}, entry);
    case TriggerEntryType::MIDIStop: return messageTrigger(Message::Stop{}, entry);
    case TriggerEntryType::HostStart: return hostTrigger(Transport::Start, entry);
    case TriggerEntryType::HostContinue: return hostTrigger(Transport::Continue, entry);
    case TriggerEntryType::HostStop: return hostTrigger(Transport::Stop, entry);
    case TriggerEntryType::OnLoad: break;
    }
    return RuleTriggerV2::OnLoad{};
}

StatusV2 statusOf(const StatusByteV2& status) {
    const auto* withChannel = status.getIf<StatusByteV2::WithChannel>();
    return withChannel != nullptr ? withChannel->status : status.getIf<StatusByteV2::JustStatus>()->status;
}

/// Behind a message of one data byte, or a program and its bank, nothing shows what is copied.
std::optional<std::string> whyNoSecondByte(const Output::Protocol& message) {
    return message.byte2 && message.byte2->isCopied()
               ? std::optional("its second data byte is copied from the trigger")
               : std::nullopt;
}

std::optional<std::string> whyNoEntry(const Output::Protocol& message) {
    switch (statusOf(message.status)) {
    case StatusV2::noteOn:
    case StatusV2::noteOff: return message.byte2 ? std::nullopt : std::optional("its note has no velocity");
    case StatusV2::CC: return message.byte2 ? std::nullopt : std::optional("its controller has no value");
    case StatusV2::channelPressure:
        return message.byte1.isCopied() ? std::optional("its pressure is copied from the trigger")
                                        : whyNoSecondByte(message);
    case StatusV2::pitchWheel:
        if (!message.byte2) {
            return "its pitch has one data byte only";
        }
        return message.byte1.isCopied() || message.byte2->isCopied()
                   ? std::optional("its pitch is copied from the trigger")
                   : std::nullopt;
    case StatusV2::programChange: return whyNoSecondByte(message);
    }
    return std::nullopt;
}

bool isAbove(const GenericByteV2& byte, unsigned greatest) {
    const auto* fixed = byte.getIf<GenericByteV2::Value>();
    return fixed != nullptr && fixed->value > greatest;
}

std::optional<std::string> whatEditingChanges(const Output::Protocol& message) {
    switch (statusOf(message.status)) {
    case StatusV2::programChange: return "its program change has no bank, and gets bank 0";
    case StatusV2::channelPressure:
        return message.byte2 ? std::optional("its pressure has a second data byte, and loses it")
                             : std::nullopt;
    case StatusV2::pitchWheel:
        return isAbove(message.byte1, dataMask) || isAbove(*message.byte2, dataMask)
                   ? std::optional("its pitch has data bytes above 127, and gets others")
                   : std::nullopt;
    case StatusV2::noteOn:
    case StatusV2::noteOff:
    case StatusV2::CC: break;
    }
    return std::nullopt;
}

std::uint8_t fixedValue(const GenericByteV2& byte) {
    return byte.getIf<GenericByteV2::Value>()->value;
}

/// Only for messages that the editor can hold.
void fill(RuleOutputEntry& entry, const Output::Protocol& message) {
    if (const auto* withChannel = message.status.getIf<StatusByteV2::WithChannel>()) {
        entry.channel = withChannel->channel;
    }
    switch (statusOf(message.status)) {
    case StatusV2::noteOn:
    case StatusV2::noteOff:
        entry.type =
            statusOf(message.status) == StatusV2::noteOn ? OutputEntryType::NoteOn : OutputEntryType::NoteOff;
        entry.note = message.byte1;
        entry.velocity = *message.byte2;
        return;
    case StatusV2::CC:
        entry.type = OutputEntryType::ControlChange;
        entry.controller = message.byte1;
        entry.controllerValue = *message.byte2;
        return;
    case StatusV2::programChange:
        entry.type = OutputEntryType::ProgramChange;
        entry.program = message.byte1;
        return;
    case StatusV2::channelPressure:
        entry.type = OutputEntryType::ChannelPressure;
        entry.pressure = fixedValue(message.byte1);
        return;
    case StatusV2::pitchWheel:
        entry.type = OutputEntryType::PitchWheel;
        entry.pitch.value = static_cast<std::uint16_t>(fixedValue(message.byte1) +
                                                       secondByteWeight * fixedValue(*message.byte2));
        return;
    }
}

void fill(RuleOutputEntry& entry, const Output& message) {
    std::visit(Overloaded{
                   [&](const Output::Protocol& protocol) { fill(entry, protocol); },
                   [&](const Output::ProgramChange& program) {
                       entry.type = OutputEntryType::ProgramChange;
                       entry.channel = program.channel;
                       entry.bank = program.bank;
                       entry.program = program.program;
                   },
                   [&](const Output::SystemExclusive& exclusive) {
                       entry.type = OutputEntryType::SystemExclusive;
                       entry.systemExclusive = exclusive.body;
                   },
               },
               message.variant());
}

void fill(RuleTriggerEntry& entry, const VoiceCategoryTriggerV2& voice) {
    entry.channel = voice.channel;
    std::visit(Overloaded{
                   [&](const Voice::NoteOn& on) {
                       entry.type = TriggerEntryType::NoteOn;
                       entry.note = on.note;
                   },
                   [&](const Voice::NoteOff& off) {
                       entry.type = TriggerEntryType::NoteOff;
                       entry.note = off.note;
                   },
                   [&](const Voice::ControlChange& change) {
                       entry.type = TriggerEntryType::ControlChange;
                       entry.controller = change.controller;
                       entry.controllerValue = change.value;
                   },
                   [&](const Voice::ProgramChange& change) {
                       entry.type = TriggerEntryType::ProgramChange;
                       entry.program = change.program;
                   },
               },
               voice.variants.variant());
}

void fill(RuleTriggerEntry& entry, const MessageBasedTriggerV2& trigger) {
    entry.passThrough = trigger.passTrough;
    std::visit(Overloaded{
                   [&](const Message::VoiceCategory& voice) { fill(entry, voice.voice); },
                   [&](Message::Start) { entry.type = TriggerEntryType::MIDIStart; },
                   [&](Message::Stop) { entry.type = TriggerEntryType::MIDIStop; },
                   [&](Message::Continue) { entry.type = TriggerEntryType::MIDIContinue; },
               },
               trigger.variants.variant());
}

TriggerEntryType entryType(Transport transport) {
    switch (transport) {
    case Transport::Start: return TriggerEntryType::HostStart;
    case Transport::Continue: return TriggerEntryType::HostContinue;
    case Transport::Stop: break;
    }
    return TriggerEntryType::HostStop;
}

void fill(RuleTriggerEntry& entry, const RuleTriggerV2& trigger) {
    std::visit(Overloaded{
                   [&](const RuleTriggerV2::MessageBased& message) { fill(entry, message.trigger); },
                   [&](const RuleTriggerV2::HostTransport& host) {
                       entry.type = entryType(host.trigger.variants);
                       entry.passThrough = host.trigger.passThrough;
                   },
                   [&](RuleTriggerV2::OnLoad) { entry.type = TriggerEntryType::OnLoad; },
               },
               trigger.variant());
}

}  // namespace

RuleEntry defaultEntry(OutputEntryType type, std::int64_t index) {
    RuleEntry entry;
    entry.output.type = type;
    entry.name = "Message #" + std::to_string(index);
    return entry;
}

Rule ruleFromEntry(const RuleEntry& entry) {
    return {
        {messageFromEntry(entry.output), entry.output.delay}, triggerFromEntry(entry.trigger), entry.name};
}

std::optional<std::string> whyNoEntry(const Rule& rule) {
    const auto* protocol = rule.output.message.getIf<Output::Protocol>();
    return protocol != nullptr ? whyNoEntry(*protocol) : std::nullopt;
}

std::optional<std::string> whatEditingChanges(const Rule& rule) {
    const auto* protocol = rule.output.message.getIf<Output::Protocol>();
    return protocol != nullptr && !whyNoEntry(rule) ? whatEditingChanges(*protocol) : std::nullopt;
}

RuleEntry entryFromRule(const Rule& rule) {
    if (const auto reason = whyNoEntry(rule)) {
        fatalError("the editor cannot hold the rule " + inQuotes(rule.name) + ": " + *reason);
    }
    RuleEntry entry;
    fill(entry.output, rule.output.message);
    entry.output.delay = rule.output.delay;
    fill(entry.trigger, rule.trigger);
    entry.name = rule.name;
    return entry;
}

}  // namespace quillo
