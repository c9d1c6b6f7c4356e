// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReasons.hpp"

#include <string>
#include <string_view>

#include "engine/TriggerPattern.hpp"
#include "midi/Status.hpp"
#include "rules/RuleTriggerV2.hpp"
#include "words/MessageWords.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;

std::string difference(const std::string& wanted, const std::string& given) {
    return "it waits for " + wanted + ", this is " + given;
}

std::string kindWanted(const Voice& voice) {
    return std::visit(Overloaded{
                          [](const Voice::NoteOn&) { return std::string("Note On"); },
                          [](const Voice::NoteOff&) { return std::string("Note Off"); },
                          [](const Voice::ControlChange&) { return std::string("CC"); },
                          [](const Voice::ProgramChange&) { return std::string("Program Change"); },
                      },
                      voice.variant());
}

std::string kindWanted(const Message& trigger) {
    return std::visit(
        Overloaded{
            [](const Message::VoiceCategory& category) { return kindWanted(category.voice.variants); },
            [](Message::Start) { return std::string("MIDI Start"); },
            [](Message::Stop) { return std::string("MIDI Stop"); },
            [](Message::Continue) { return std::string("MIDI Continue"); },
        },
        trigger.variant());
}

std::string kindWanted(HostTransportTriggerVariantsV2 change) {
    switch (change) {
    case HostTransportTriggerVariantsV2::Start: return "the host's transport to start";
    case HostTransportTriggerVariantsV2::Continue: return "the host's transport to continue";
    case HostTransportTriggerVariantsV2::Stop: return "the host's transport to stop";
    }
    return {};
}

std::string kindGiven(const MIDIMessage& message) {
    switch (message.bytes()[0] & midi::kindMask) {
    case midi::noteOff: return "a Note Off";
    case midi::noteOn: return "a Note On";
    case midi::notePressure: return "pressure on a note";
    case midi::controlChange: return "a CC";
    case midi::programChange: return "a Program Change";
    case midi::channelPressure: return "channel pressure";
    case midi::pitchWheel: return "pitch bend";
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

/// A note-on with velocity 0 surprises those who take it for a note-off.
std::string kindRemark(const Message& trigger, const MIDIMessage& message) {
    const auto* category = trigger.getIf<Message::VoiceCategory>();
    const bool wantsNoteOff = category != nullptr && category->voice.variants.is<Voice::NoteOff>();
    const auto bytes = message.bytes();
    const bool isSilentNoteOn = kindGiven(message) == "a Note On" && bytes[2] == 0;
    return wantsNoteOff && isSilentNoteOn ? " (even with velocity 0)" : "";
}

std::string dataFailure(const Voice& voice, const MIDIMessage& message) {
    const auto data1 = message.bytes()[1];
    const auto wanted = [](const TriggerValueV2& value) {
        return value.getIf<TriggerValueV2::Value>()->value;
    };
    const auto note = [&](const TriggerValueV2& value) {
        return difference("note " + noteWords(wanted(value)), "note " + noteWords(data1));
    };
    return std::visit(Overloaded{
                          [&](const Voice::NoteOn& on) { return note(on.note); },
                          [&](const Voice::NoteOff& off) { return note(off.note); },
                          [&](const Voice::ControlChange& change) {
                              return difference("controller " + controllerWords(change.controller),
                                                "controller " + controllerWords(data1));
                          },
                          [&](const Voice::ProgramChange& change) {
                              return difference("program " + dataByteWords(wanted(change.program)),
                                                "program " + dataByteWords(data1));
                          },
                      },
                      voice.variant());
}

std::string valueFailure(const Voice& voice, const MIDIMessage& message) {
    const auto wanted = voice.getIf<Voice::ControlChange>()->value.getIf<TriggerValueV2::Value>()->value;
    return difference("value " + dataByteWords(wanted), "value " + dataByteWords(message.bytes()[2]));
}

std::string channelFailure(const VoiceCategoryTriggerV2& voice, const MIDIMessage& message) {
    const auto wanted = voice.channel.getIf<TriggerValueV2::Value>()->value;
    return difference(channelWords(wanted), channelWords(message.bytes()[0] & midi::channelMask));
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

std::string delayWords(SampleTime milliseconds) {
    return milliseconds == 0 ? " at once" : " after " + std::to_string(milliseconds) + " ms";
}

/// "sent b0 00 00, c0 30 at once".
std::string sentWords(const RuleAccount& account) {
    std::string words;
    for (const auto& message : account.messages) {
        words += (words.empty() ? "sent " : ", ") + shownBytes(message);
    }
    return words + delayWords(account.delay);
}

/// Why a trigger that was tried does not match the event, by the first condition that fails: "it waits for
/// channel 3, this is channel 1". Kinds are called what the editor's menus call them. A message is complete.
std::string failureWords(const RuleTriggerV2& trigger, TriggerCondition failure, const AskedEvent& event) {
    const auto* message = std::get_if<MIDIMessage>(&event);
    if (const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        return message == nullptr ? difference(kindWanted(based->trigger.variants), "the host's transport")
                                  : messageFailure(based->trigger.variants, failure, *message);
    }
    const auto wanted = kindWanted(trigger.getIf<RuleTriggerV2::HostTransport>()->trigger.variants);
    return difference(wanted, message == nullptr ? kindGiven(std::get<HostTransportTriggerVariantsV2>(event))
                                                 : kindGiven(*message));
}

/// Why a rule is not asked about the event at all: "it fires only when the plug-in is loaded".
std::string asideWords(const RuleTriggerV2& trigger, const AskedEvent& event) {
    if (trigger.is<RuleTriggerV2::OnLoad>()) {
        return "it fires only when the plug-in is loaded";
    }
    if (std::holds_alternative<MIDIMessage>(event)) {
        return "system exclusive that comes in is never shown to the rules";
    }
    const bool isHost = trigger.is<RuleTriggerV2::HostTransport>();
    return std::string("it waits for ") + (isHost ? "the host's transport" : "MIDI") + ", this is loading";
}

RuleReason reasonOf(const std::vector<Rule>& rules, std::size_t rule, const AskedEvent& event,
                    const EventExplanation& explanation, const RuleShelf& shelf) {
    using Verdict = RuleAccount::Verdict;
    const auto& account = explanation.rules[rule];
    const auto& trigger = rules[rule].trigger;
    const bool consumed = explanation.consumer == rule;
    switch (account.verdict) {
    case Verdict::fires:
        return {"fired", sentWords(account) + (consumed ? ", and consumed it" : ""), true, consumed};
    case Verdict::fails:
        return {consumed ? "consumed it" : "passed over", failureWords(trigger, account.failure, event),
                false, consumed};
    case Verdict::neverTried:
        return {"not reached", ruleWords(rules, *explanation.consumer, shelf) + " consumed it"};
    case Verdict::standsAside: break;
    }
    return {"not asked", asideWords(trigger, event)};
}

}  // namespace

std::vector<RuleReason> ruleReasons(const std::vector<Rule>& rules, const AskedEvent& event,
                                    const EventExplanation& explanation, const RuleShelf& shelf) {
    std::vector<RuleReason> reasons;
    reasons.reserve(rules.size());
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        reasons.push_back(reasonOf(rules, rule, event, explanation, shelf));
    }
    return reasons;
}

RuleReason switchedOff() {
    return {"switched off", ""};
}

std::vector<RuleReason> why(const std::vector<Rule>& rules, const AskedEvent& event, const RuleShelf& shelf) {
    EngineProbe probe(rules);
    const auto running = ruleReasons(rules, event, explain(probe, event), shelf);
    std::vector<RuleReason> reasons;
    reasons.reserve(rules.size() + shelf.size());
    auto next = running.begin();
    visitInOrder(rules, shelf, [&](const Rule& /*rule*/, bool isOff) {
        reasons.push_back(isOff ? switchedOff() : *next++);
    });
    return reasons;
}

}  // namespace quillo
