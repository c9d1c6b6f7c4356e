// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/NoteLedger.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <variant>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "rules/StatusV2.hpp"

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;

bool is(Bytes message, StatusV2 kind) {
    return isCompleteChannelMessage(message) && (message[0] & midi::kindMask) == statusNibble(kind);
}

bool isNote(Bytes message) {
    return is(message, StatusV2::noteOn) || is(message, StatusV2::noteOff);
}

/// Keeps the greatest delay.
void keepLast(std::unordered_map<std::uint32_t, SampleTime>& delays, std::uint32_t key, SampleTime delay) {
    const auto [place, isNew] = delays.emplace(key, delay);
    if (!isNew) {
        place->second = std::max(place->second, delay);
    }
}

std::optional<SampleTime> delayAt(const std::unordered_map<std::uint32_t, SampleTime>& delays,
                                  std::uint32_t key) {
    const auto place = delays.find(key);
    return place == delays.end() ? std::nullopt : std::optional(place->second);
}

}  // namespace

void NoteLedger::watch(const Trial& trial) {
    const auto* message = std::get_if<MIDIMessage>(&trial.event);
    const auto trigger = message == nullptr ? Bytes() : message->bytes();
    watchForwarding(trial, trigger);
    for (const auto& firing : trial.outcome.firings) {
        for (const auto& sent : firing.messages) {
            record(firing, sent.bytes(), trigger);
        }
    }
}

std::optional<NoteLedger::Note> NoteLedger::neverEnded(std::size_t rule) const {
    const auto found = lowest(rule, Fate::neverEnded);
    return found ? std::optional(noteAt(*found)) : std::nullopt;
}

std::optional<NoteLedger::Chance> NoteLedger::endedByChance(std::size_t rule) const {
    const auto found = lowest(rule, Fate::endedByChance);
    return found ? std::optional(Chance{noteAt(*found), !endedByNoteOffs_[*found]}) : std::nullopt;
}

std::optional<NoteLedger::EarlyEnd> NoteLedger::endedTooSoon(std::size_t rule) const {
    const auto& started = started_[rule];
    const auto found = std::ranges::find_if(
        started.byKeys, [&](Start start) { return fateOf(start, started.delay) == Fate::endedTooSoon; });
    if (found == started.byKeys.end()) {
        return std::nullopt;
    }
    return EarlyEnd{noteAt(found->note), started.delay, *ownEnd(*found)};
}

std::optional<NoteLedger::Note> NoteLedger::endSwallowed(std::size_t rule) const {
    constexpr int middleC = 60;
    const auto fromMiddleC = [](Note note) {
        return std::pair(note.channel, std::abs(int{note.number} - middleC));
    };
    std::optional<Note> example;
    for (std::size_t index = 0; index < forwarded_.size(); ++index) {
        const auto note = noteAt(index);
        const auto key = static_cast<Index>(index);
        const bool isSwallowed =
            forwarded_[index] && swallowers_[index] == rule && fateOf({key, key}, 0) != Fate::ended;
        if (isSwallowed && (!example || fromMiddleC(note) < fromMiddleC(*example))) {
            example = note;
        }
    }
    return example;
}

NoteLedger::Note NoteLedger::noteAt(std::size_t index) {
    return {static_cast<std::uint8_t>(index / noteCount), static_cast<std::uint8_t>(index % noteCount)};
}

/// Of a complete note: its channel and number.
NoteLedger::Index NoteLedger::indexOf(Bytes message) {
    return static_cast<Index>((message[0] & midi::channelMask) * noteCount + message[1]);
}

/// A note or a channel, and a key.
std::uint32_t NoteLedger::together(std::size_t first, Index key) {
    return static_cast<std::uint32_t>(first * channelCount * noteCount + key);
}

void NoteLedger::watchForwarding(const Trial& trial, Bytes trigger) {
    if (is(trigger, StatusV2::noteOn)) {
        const bool starts = trial.outcome.forwarded && trigger[2] > 0;
        forwarded_[indexOf(trigger)] = forwarded_[indexOf(trigger)] || starts;
    } else if (is(trigger, StatusV2::noteOff)) {
        releasesForwarded_[indexOf(trigger)] = trial.outcome.forwarded;
        swallowers_[indexOf(trigger)] = trial.outcome.consumer;
    }
}

void NoteLedger::record(const EngineProbe::Firing& firing, Bytes sent, Bytes trigger) {
    if (is(sent, StatusV2::noteOff)) {
        recordEnd(sent, trigger, firing.delay);
    } else if (is(sent, StatusV2::noteOn)) {
        recordNoteOn(firing, sent, trigger);
    } else if (is(sent, StatusV2::CC)) {
        recordSilence(sent, trigger, firing.delay);
    }
}

/// With velocity 0 it is an end. A rule that sends that velocity whatever comes does so for other velocities of
/// its trigger, too; one that copies it ends notes by chance.
void NoteLedger::recordNoteOn(const EngineProbe::Firing& firing, Bytes sent, Bytes trigger) {
    const auto note = indexOf(sent);
    if (sent[2] == 0) {
        if (!isNote(trigger) || trigger[2] != 0) {
            recordEnd(sent, trigger, firing.delay);
        } else {
            (is(trigger, StatusV2::noteOn) ? endedByNoteOns_ : endedByNoteOffs_).set(note);
        }
        return;
    }
    auto& started = started_[firing.rule];
    started.delay = firing.delay;
    if (!is(trigger, StatusV2::noteOn)) {
        started.others.set(note);
        return;
    }
    const Start start{note, indexOf(trigger)};
    if (started.byKeys.empty() || started.byKeys.back() != start) {
        started.byKeys.push_back(start);
    }
}

void NoteLedger::recordEnd(Bytes sent, Bytes trigger, SampleTime delay) {
    const auto note = indexOf(sent);
    if (!is(trigger, StatusV2::noteOff)) {
        ended_.set(note);
        return;
    }
    endedByReleases_.set(note);
    keepLast(ends_, together(note, indexOf(trigger)), delay);
}

void NoteLedger::recordSilence(Bytes sent, Bytes trigger, SampleTime delay) {
    constexpr std::uint8_t allSoundOff = 120;
    constexpr std::uint8_t allNotesOff = 123;
    if (sent[1] != allSoundOff && sent[1] < allNotesOff) {
        return;
    }
    const std::size_t channel = sent[0] & midi::channelMask;
    const bool isRelease = is(trigger, StatusV2::noteOff);
    for (std::size_t note = 0; note < noteCount; ++note) {
        (isRelease ? endedByReleases_ : ended_).set(channel * noteCount + note);
    }
    if (isRelease) {
        keepLast(silences_, together(channel, indexOf(trigger)), delay);
    }
}

/// Of the notes that the rule starts and that fare so, the lowest on the lowest channel.
std::optional<std::size_t> NoteLedger::lowest(std::size_t rule, Fate fate) const {
    const auto& started = started_[rule];
    std::optional<std::size_t> lowest;
    const auto consider = [&](std::size_t note) { lowest = std::min(lowest.value_or(note), note); };
    for (const auto start : started.byKeys) {
        if (fateOf(start, started.delay) == fate) {
            consider(start.note);
        }
    }
    for (std::size_t note = 0; note < started.others.size(); ++note) {
        if (started.others[note] && fateOf(note) == fate) {
            consider(note);
        }
    }
    return lowest;
}

NoteLedger::Fate NoteLedger::fateOf(Start start, SampleTime delay) const {
    const auto end = ended_[start.note] ? std::nullopt : ownEnd(start);
    if (end) {
        return *end < delay ? Fate::endedTooSoon : Fate::ended;
    }
    return fateOf(start.note);
}

NoteLedger::Fate NoteLedger::fateOf(std::size_t note) const {
    if (ended_[note] || endedByReleases_[note]) {
        return Fate::ended;
    }
    return endedByNoteOns_[note] || endedByNoteOffs_[note] ? Fate::endedByChance : Fate::neverEnded;
}

/// When, after its release, the key that started the note ends it for the last time.
std::optional<SampleTime> NoteLedger::ownEnd(Start start) const {
    const bool isForwarded = start.note == start.key && releasesForwarded_[start.key];
    const auto end = delayAt(ends_, together(start.note, start.key));
    const auto silence = delayAt(silences_, together(start.note / noteCount, start.key));
    return std::max({end, silence, isForwarded ? std::optional<SampleTime>(0) : std::nullopt});
}

}  // namespace quillo
