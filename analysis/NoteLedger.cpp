// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/NoteLedger.hpp"

#include <algorithm>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "rules/StatusV2.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr SampleTime none = -1;

bool is(Bytes message, StatusV2 kind) {
    return isCompleteChannelMessage(message) && (message[0] & midi::kindMask) == statusNibble(kind);
}

bool isNote(EventKind kind) {
    return kind == EventKind::noteOn || kind == EventKind::noteOff;
}

bool isNoteOnWith(Bytes message, bool velocity) {
    return is(message, StatusV2::noteOn) && (message[2] > 0) == velocity;
}

bool silences(Bytes message) {
    constexpr std::uint8_t allSoundOff = 120;
    constexpr std::uint8_t allNotesOff = 123;
    return is(message, StatusV2::CC) && (message[1] == allSoundOff || message[1] >= allNotesOff);
}

/// Keeps the note that makes the better example.
void offer(std::optional<NoteLedger::Note>& example, NoteLedger::Note note) {
    const auto rank = [](NoteLedger::Note of) {
        constexpr unsigned middleC = 60;
        constexpr unsigned noteCount = 128;
        return of.channel * noteCount + (of.number + noteCount - middleC) % noteCount;
    };
    if (!example || rank(note) < rank(*example)) {
        example = note;
    }
}

}  // namespace

NoteLedger::NoteLedger(const std::vector<Rule>& rules, const RuleReach& reach)
    : rules_(rules), reach_(reach) {
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        forEachNoteMessage(rule, [&](const Sending& sending) { recordEnd(rule, sending); });
    }
}

/// Calls `visit` with each short message that the rule ever sends: of a note's velocities, 0 and another one
/// stand for all.
template <class Visit>
void NoteLedger::forEachNoteMessage(std::size_t rule, Visit visit) const {
    const auto content = compile(rules_[rule].output.message);
    const auto send = [&](const Event& event, const TriggerBytes& trigger) {
        const auto messages = messagesOf(content, trigger);
        for (const auto& message : messages.messages()) {
            visit(Sending{event, trigger, message.bytes()});
        }
    };
    if (rules_[rule].trigger.is<RuleTriggerV2::OnLoad>()) {
        send({EventKind::hostStart}, {});
        return;
    }
    reach_.box(rule).any([&](const Event& event) {
        if (reach_.fires(rule, event)) {
            auto trigger = event.bytes();
            send(event, trigger);
            if (isNote(event.kind)) {
                trigger.data2 = 1;
                send(event, trigger);
            }
        }
        return false;
    });
}

NoteLedger::Note NoteLedger::noteAt(Index index) {
    return {static_cast<std::uint8_t>(index / noteCount), static_cast<std::uint8_t>(index % noteCount)};
}

/// Of a complete note: its channel and number.
NoteLedger::Index NoteLedger::indexOf(Bytes message) {
    return (message[0] & midi::channelMask) * noteCount + message[1];
}

/// Of a note event: the key.
NoteLedger::Index NoteLedger::keyOf(const Event& event) {
    return event.channel * noteCount + event.data1;
}

void NoteLedger::keepLast(std::unique_ptr<EndsByKey>& ends, Index key, SampleTime delay) {
    if (!ends) {
        ends = std::make_unique<EndsByKey>();
        ends->fill(none);
    }
    auto& last = (*ends)[key];
    last = std::max(last, delay);
}

/// A rule that sends velocity 0 whatever comes does so for other velocities of its trigger, too; one that
/// copies it ends notes by chance.
void NoteLedger::recordEnd(std::size_t rule, const Sending& sending) {
    const auto delay = rules_[rule].output.delay.ms;
    const auto& [event, trigger, sent] = sending;
    const bool isByChance = isNote(event.kind) && trigger.data2 == 0;
    if (is(sent, StatusV2::noteOff) || (isNoteOnWith(sent, false) && !isByChance)) {
        recordNoteEnd(indexOf(sent), sending, delay);
    } else if (isNoteOnWith(sent, false)) {
        (event.kind == EventKind::noteOn ? endedByNoteOns_ : endedByNoteOffs_).set(indexOf(sent));
    } else if (silences(sent)) {
        recordSilence(sent[0] & midi::channelMask, sending, delay);
    }
}

void NoteLedger::recordNoteEnd(Index note, const Sending& sending, SampleTime delay) {
    if (sending.event.kind != EventKind::noteOff) {
        ended_.set(note);
        return;
    }
    endedByReleases_.set(note);
    keepLast(ends_.at(note), keyOf(sending.event), delay);
}

void NoteLedger::recordSilence(std::size_t channel, const Sending& sending, SampleTime delay) {
    const bool isRelease = sending.event.kind == EventKind::noteOff;
    for (std::size_t note = 0; note < noteCount; ++note) {
        (isRelease ? endedByReleases_ : ended_).set(channel * noteCount + note);
    }
    if (isRelease) {
        keepLast(silences_.at(channel), keyOf(sending.event), delay);
    }
}

NoteLedger::Findings NoteLedger::findings(std::size_t rule) const {
    const auto delay = rules_[rule].output.delay.ms;
    std::optional<Note> never;
    std::optional<Note> byChance;
    std::optional<Note> tooSoon;
    SampleTime tooSoonAfter = none;
    forEachNoteMessage(rule, [&](const Sending& sending) {
        if (!isNoteOnWith(sending.sent, true)) {
            return;
        }
        const auto note = indexOf(sending.sent);
        const bool isPress = sending.event.kind == EventKind::noteOn;
        const auto end = isPress && !ended_[note] ? ownEnd(note, keyOf(sending.event)) : std::nullopt;
        if (end && *end < delay) {
            offer(tooSoon, noteAt(note));
            tooSoonAfter = tooSoon == noteAt(note) ? *end : tooSoonAfter;
        } else if (!end && !isEnded(note)) {
            offer(endedByNoteOns_[note] || endedByNoteOffs_[note] ? byChance : never, noteAt(note));
        }
    });
    const auto chanceOf = [&](Note note) {
        return Chance{note, !endedByNoteOffs_[note.channel * noteCount + note.number]};
    };
    return {never, byChance ? std::optional(chanceOf(*byChance)) : std::nullopt,
            tooSoon ? std::optional(EarlyEnd{*tooSoon, delay, tooSoonAfter}) : std::nullopt};
}

std::optional<NoteLedger::Note> NoteLedger::endSwallowed(std::size_t rule) const {
    std::optional<Note> example;
    if (policyOf(rules_[rule].trigger) == PassThroughV2::PassThrough) {
        return example;
    }
    for (Index key = 0; key < keyCount; ++key) {
        const auto note = noteAt(key);
        const bool passes = !reach_.consumer({EventKind::noteOn, note.channel, note.number});
        const bool isSwallowed =
            passes && reach_.consumer({EventKind::noteOff, note.channel, note.number}) == rule;
        if (isSwallowed && !isEnded(key) && !ownEnd(key, key)) {
            offer(example, note);
        }
    }
    return example;
}

/// When, after its release, the key that started the note ends it for the last time.
std::optional<SampleTime> NoteLedger::ownEnd(Index note, Index key) const {
    const auto endIn = [key](const std::unique_ptr<EndsByKey>& ends) { return ends ? (*ends)[key] : none; };
    const auto release = noteAt(key);
    const bool isForwarded =
        note == key && !reach_.consumer({EventKind::noteOff, release.channel, release.number});
    const auto last = std::max(
        {endIn(ends_.at(note)), endIn(silences_.at(note / noteCount)), isForwarded ? SampleTime{0} : none});
    return last == none ? std::nullopt : std::optional(last);
}

}  // namespace quillo
