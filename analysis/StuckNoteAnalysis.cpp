// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/StuckNoteAnalysis.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "midi/Status.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

constexpr SampleTime none = -1;

bool isNote(EventKind kind) {
    return kind == EventKind::noteOn || kind == EventKind::noteOff;
}

bool silencesChannel(std::size_t controller) {
    constexpr std::size_t allSoundOff = 120;
    constexpr std::size_t allNotesOff = 123;
    return controller == allSoundOff || controller >= allNotesOff;
}

bool mayEndNotes(const SentMessage& message) {
    switch (message.kind) {
    case StatusV2::noteOff: return true;
    case StatusV2::noteOn: return message.data2.value_or(0) == 0;
    case StatusV2::CC: return !message.data1 || silencesChannel(*message.data1);
    default: return false;
    }
}

/// Keeps the note that makes the better example.
void offer(std::optional<StuckNoteAnalysis::Note>& example, StuckNoteAnalysis::Note note) {
    const auto rank = [](StuckNoteAnalysis::Note of) {
        constexpr unsigned middleC = 60;
        constexpr unsigned noteCount = 128;
        return of.channel * noteCount + (of.number + noteCount - middleC) % noteCount;
    };
    if (!example || rank(note) < rank(*example)) {
        example = note;
    }
}

}  // namespace

bool StuckNoteAnalysis::Sending::starts() const {
    return kind == StatusV2::noteOn && (data2 > 0 || copiesVelocity);
}

bool StuckNoteAnalysis::Sending::ends() const {
    return kind == StatusV2::noteOff || (kind == StatusV2::noteOn && data2 == 0 && !copiesVelocity);
}

bool StuckNoteAnalysis::Sending::silences() const {
    return kind == StatusV2::CC && silencesChannel(note % noteCount);
}

/// Behind a message that the same events sent before, the same message ends nothing more: what comes as far
/// as to a rule came to those above it.
StuckNoteAnalysis::StuckNoteAnalysis(const std::vector<Rule>& rules, const RuleReach& reach)
    : rules_(rules), reach_(reach) {
    std::set<std::pair<EventBox, SentMessage>> recorded;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        for (const auto& message : sentBy(rules[rule].output)) {
            if (mayEndNotes(message) && recorded.emplace(reach.box(rule), message).second) {
                forEachSending(rule, message, [&](const Sending& sent) { recordEnd(sent, message.delay); });
            }
        }
    }
}

template <class Visit>
void StuckNoteAnalysis::forEachSending(std::size_t rule, const SentMessage& message, Visit visit) const {
    const auto send = [&](const Event& event) {
        const auto trigger = event.bytes();
        const Index channel = message.channel.value_or(trigger.status & midi::channelMask);
        const Index number = message.data1.value_or(trigger.data1);
        visit(Sending{event, message.kind, channel * noteCount + number,
                      message.data2.value_or(trigger.data2), !message.data2 && isNote(event.kind)});
    };
    if (rules_[rule].trigger.is<RuleTriggerV2::OnLoad>()) {
        send({EventKind::hostStart});
    }
    reach_.box(rule).any([&](const Event& event) {
        if (reach_.fires(rule, event)) {
            send(event);
        }
        return false;
    });
}

StuckNoteAnalysis::Note StuckNoteAnalysis::noteAt(Index index) {
    return {static_cast<std::uint8_t>(index / noteCount), static_cast<std::uint8_t>(index % noteCount)};
}

/// Of a note event: the key.
StuckNoteAnalysis::Index StuckNoteAnalysis::keyOf(const Event& event) {
    return event.channel * noteCount + event.data1;
}

void StuckNoteAnalysis::keepLast(std::unique_ptr<EndsByKey>& ends, const Event& release, SampleTime delay) {
    if (!ends) {
        ends = std::make_unique<EndsByKey>();
        ends->fill(none);
    }
    auto& last = (*ends)[keyOf(release)];
    last = std::max(last, delay);
}

void StuckNoteAnalysis::recordEnd(const Sending& sending, SampleTime delay) {
    if (sending.ends()) {
        recordNoteEnd(sending, delay);
    } else if (sending.starts() && sending.copiesVelocity) {
        (sending.isOnRelease() ? endedByNoteOffs_ : endedByNoteOns_).set(sending.note);
    } else if (sending.silences()) {
        recordSilence(sending, delay);
    }
}

void StuckNoteAnalysis::recordNoteEnd(const Sending& sending, SampleTime delay) {
    (sending.isOnRelease() ? endedByReleases_ : ended_).set(sending.note);
    if (sending.isOnRelease()) {
        keepLast(ends_.at(sending.note), sending.event, delay);
    }
}

void StuckNoteAnalysis::recordSilence(const Sending& sending, SampleTime delay) {
    const auto channel = sending.note / noteCount;
    (sending.isOnRelease() ? silencedByReleases_ : silenced_).set(channel);
    if (sending.isOnRelease()) {
        keepLast(silences_.at(channel), sending.event, delay);
    }
}

StuckNoteAnalysis::Findings StuckNoteAnalysis::findings(std::size_t rule) const {
    const auto delay = rules_[rule].output.delay.ms;
    std::optional<Note> never;
    std::optional<Note> byChance;
    std::optional<Note> tooSoon;
    SampleTime tooSoonAfter = none;
    const auto see = [&](const Sending& sending) {
        const auto note = sending.note;
        if (!sending.starts() || note / noteCount == drumChannel) {
            return;
        }
        const bool isPress = sending.event.kind == EventKind::noteOn;
        const auto end = isPress && !isEndedAnyway(note) ? ownEnd(note, keyOf(sending.event)) : std::nullopt;
        if (end && *end < delay) {
            offer(tooSoon, noteAt(note));
            tooSoonAfter = tooSoon == noteAt(note) ? *end : tooSoonAfter;
        } else if (!end && !isEnded(note)) {
            offer(endedByNoteOns_[note] || endedByNoteOffs_[note] ? byChance : never, noteAt(note));
        }
    };
    for (const auto& message : sentBy(rules_[rule].output)) {
        if (message.kind == StatusV2::noteOn && message.data2 != 0) {
            forEachSending(rule, message, see);
        }
    }
    const auto chanceOf = [&](Note note) {
        return Chance{note, !endedByNoteOffs_[note.channel * noteCount + note.number]};
    };
    return {never, byChance ? std::optional(chanceOf(*byChance)) : std::nullopt,
            tooSoon ? std::optional(EarlyEnd{*tooSoon, delay, tooSoonAfter}) : std::nullopt};
}

std::optional<StuckNoteAnalysis::Note> StuckNoteAnalysis::endSwallowed(std::size_t rule) const {
    std::optional<Note> example;
    const bool isGate = policyOf(rules_[rule].trigger) == PassThroughV2::EatNonMatching;
    if (!reach_.consumesAny(rule) || (!isGate && reach_.box(rule).kind() != EventKind::noteOff)) {
        return example;
    }
    for (Index key = 0; key < keyCount; ++key) {
        const auto note = noteAt(key);
        const bool passes = !reach_.consumer({EventKind::noteOn, note.channel, note.number});
        const bool isSwallowed = passes && note.channel != drumChannel &&
                                 reach_.consumer({EventKind::noteOff, note.channel, note.number}) == rule;
        if (isSwallowed && !isEnded(key) && !ownEnd(key, key)) {
            offer(example, note);
        }
    }
    return example;
}

bool StuckNoteAnalysis::isEndedAnyway(Index note) const {
    return ended_[note] || silenced_[note / noteCount];
}

bool StuckNoteAnalysis::isEnded(Index note) const {
    return isEndedAnyway(note) || endedByReleases_[note] || silencedByReleases_[note / noteCount];
}

/// When, after its release, the key that started the note ends it for the last time.
std::optional<SampleTime> StuckNoteAnalysis::ownEnd(Index note, Index key) const {
    const auto endIn = [key](const std::unique_ptr<EndsByKey>& ends) { return ends ? (*ends)[key] : none; };
    const auto release = noteAt(key);
    const bool isForwarded =
        note == key && !reach_.consumer({EventKind::noteOff, release.channel, release.number});
    const auto last = std::max(
        {endIn(ends_.at(note)), endIn(silences_.at(note / noteCount)), isForwarded ? SampleTime{0} : none});
    return last == none ? std::nullopt : std::optional(last);
}

}  // namespace quillo
