// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/FailureWords.hpp"

#include <string_view>

#include "midi/Status.hpp"
#include "words/MessageWords.hpp"
#include "words/NumberWords.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;

std::string difference(const std::string& wanted, const std::string& given) {
    return "waits " + wanted + "; this is " + given;
}

std::string kindWanted(const Voice& voice) {
    return std::visit(Overloaded{
                          [](const Voice::NoteOn&) { return std::string("for a note-on"); },
                          [](const Voice::NoteOff&) { return std::string("for a note-off"); },
                          [](const Voice::ControlChange&) { return std::string("for a controller"); },
                          [](const Voice::ProgramChange&) { return std::string("for a program change"); },
                      },
                      voice.variant());
}

std::string kindWanted(const Message& trigger) {
    return std::visit(
        Overloaded{
            [](const Message::VoiceCategory& category) { return kindWanted(category.voice.variants); },
            [](Message::Start) { return std::string("for MIDI Start"); },
            [](Message::Stop) { return std::string("for MIDI Stop"); },
            [](Message::Continue) { return std::string("for MIDI Continue"); },
        },
        trigger.variant());
}

std::string kindWanted(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return "for the host's transport to start";
    case HostTransportTriggerVariantsV2::Continue: return "for the host's transport to continue";
    case HostTransportTriggerVariantsV2::Stop: return "for the host's transport to stop";
    }
    return {};
}

std::string kindGiven(const MIDIMessage& message) {
    switch (message.bytes()[0] & midi::kindMask) {
    case midi::noteOff: return "a note-off";
    case midi::noteOn: return "a note-on";
    case midi::notePressure: return "pressure on a note";
    case midi::controlChange: return "a controller";
    case midi::programChange: return "a program change";
    case midi::channelPressure: return "channel pressure";
    case midi::pitchWheel: return "the pitch wheel";
    default: return messageWords(message.bytes());
    }
}

std::string kindGiven(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return "its start";
    case HostTransportTriggerVariantsV2::Continue: return "its continuation";
    case HostTransportTriggerVariantsV2::Stop: return "its stop";
    }
    return {};
}

/// A note-on with velocity 0 surprises whoever takes it for a note-off.
std::string kindRemark(const Message& trigger, const MIDIMessage& message) {
    const auto* category = trigger.getIf<Message::VoiceCategory>();
    const bool wantsNoteOff = category != nullptr && category->voice.variants.is<Voice::NoteOff>();
    const auto bytes = message.bytes();
    const bool isSilentNoteOn = kindGiven(message) == "a note-on" && bytes[2] == 0;
    return wantsNoteOff && isSilentNoteOn ? " (even with velocity 0)" : "";
}

std::string dataFailure(const Voice& voice, const MIDIMessage& message) {
    const auto data1 = message.bytes()[1];
    const auto wanted = [](const TriggerValueV2& value) {
        return value.getIf<TriggerValueV2::Value>()->value;
    };
    const auto note = [&](const TriggerValueV2& value) {
        return difference("for note " + noteWords(wanted(value)), "note " + noteWords(data1));
    };
    return std::visit(Overloaded{
                          [&](const Voice::NoteOn& on) { return note(on.note); },
                          [&](const Voice::NoteOff& off) { return note(off.note); },
                          [&](const Voice::ControlChange& change) {
                              return difference("for controller " + controllerWords(change.controller),
                                                "controller " + controllerWords(data1));
                          },
                          [&](const Voice::ProgramChange& change) {
                              return difference("for program " + dataByteWords(wanted(change.program)),
                                                "program " + dataByteWords(data1));
                          },
                      },
                      voice.variant());
}

std::string valueFailure(const Voice& voice, const MIDIMessage& message) {
    const auto wanted = voice.getIf<Voice::ControlChange>()->value.getIf<TriggerValueV2::Value>()->value;
    return difference("for value " + dataByteWords(wanted), "value " + dataByteWords(message.bytes()[2]));
}

std::string channelFailure(const VoiceCategoryTriggerV2& voice, const MIDIMessage& message) {
    const auto wanted = voice.channel.getIf<TriggerValueV2::Value>()->value;
    return difference("on " + channelWords(wanted),
                      "on " + channelWords(message.bytes()[0] & midi::channelMask));
}

std::string messageFailure(const Message& trigger, TriggerCondition failure, const MIDIMessage& message) {
    if (failure == TriggerCondition::kind) {
        return difference(kindWanted(trigger), kindGiven(message)) + kindRemark(trigger, message);
    }
    const auto& voice = trigger.getIf<Message::VoiceCategory>()->voice;
    switch (failure) {
    case TriggerCondition::channel: return channelFailure(voice, message);
    case TriggerCondition::data1: return dataFailure(voice.variants, message);
    case TriggerCondition::data2: return valueFailure(voice.variants, message);
    case TriggerCondition::kind: break;
    }
    return {};
}

}  // namespace

std::string failureWords(const RuleTriggerV2& trigger, TriggerCondition failure, const AskedEvent& event) {
    const auto* message = std::get_if<MIDIMessage>(&event);
    if (const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        return message == nullptr
                   ? "waits " + kindWanted(based->trigger.variants) + ", not for the host's transport"
                   : messageFailure(based->trigger.variants, failure, *message);
    }
    const auto wanted = kindWanted(trigger.getIf<RuleTriggerV2::HostTransport>()->trigger.variants);
    return message == nullptr ? difference(wanted, kindGiven(std::get<HostTransportTriggerVariantsV2>(event)))
                              : "waits " + wanted + ", not for MIDI";
}

std::string asideWords(const RuleTriggerV2& trigger) {
    if (trigger.is<RuleTriggerV2::OnLoad>()) {
        return "fires only when the plug-in is loaded";
    }
    return trigger.is<RuleTriggerV2::HostTransport>() ? "waits for the host's transport, not for loading"
                                                      : "waits for MIDI, not for loading";
}

}  // namespace quillo
