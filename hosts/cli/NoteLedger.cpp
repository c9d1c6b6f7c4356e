// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/NoteLedger.hpp"

#include <variant>

#include "hosts/midi/MessageLength.hpp"
#include "rules/StatusV2.hpp"

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr unsigned kindMask = 0xF0;
constexpr unsigned channelMask = 0x0F;

bool is(Bytes message, StatusV2 kind) {
    return isCompleteChannelMessage(message) && (message[0] & kindMask) == statusNibble(kind);
}

bool isNote(Bytes message) {
    return is(message, StatusV2::noteOn) || is(message, StatusV2::noteOff);
}

}  // namespace

void NoteLedger::watch(const Trial& trial) {
    const auto* message = std::get_if<MIDIMessage>(&trial.event);
    const auto trigger = message == nullptr ? Bytes() : message->bytes();
    if (trial.outcome.forwarded && is(trigger, StatusV2::noteOff)) {
        releasesForwarded_.set(indexOf(trigger));
    }
    for (const auto& firing : trial.outcome.firings) {
        for (const auto& sent : firing.messages) {
            record(firing.rule, sent.bytes(), trigger);
        }
    }
}

std::optional<NoteLedger::Note> NoteLedger::neverEnded(std::size_t rule) const {
    return lowest(uncertain(rule) & ~endedByChance_);
}

std::optional<NoteLedger::Note> NoteLedger::endedByChance(std::size_t rule) const {
    return lowest(uncertain(rule) & endedByChance_);
}

NoteLedger::Notes NoteLedger::uncertain(std::size_t rule) const {
    const auto& started = started_[rule];
    return (started.others | (started.asTriggered & ~releasesForwarded_)) & ~ended_;
}

std::optional<NoteLedger::Note> NoteLedger::lowest(const Notes& notes) {
    for (std::size_t index = 0; index < notes.size(); ++index) {
        if (notes[index]) {
            return Note{static_cast<std::uint8_t>(index / noteCount),
                        static_cast<std::uint8_t>(index % noteCount)};
        }
    }
    return std::nullopt;
}

/// Of a complete note: its channel and number.
std::size_t NoteLedger::indexOf(Bytes message) {
    return (message[0] & channelMask) * noteCount + message[1];
}

void NoteLedger::record(std::size_t rule, Bytes sent, Bytes trigger) {
    if (is(sent, StatusV2::noteOff)) {
        ended_.set(indexOf(sent));
    } else if (is(sent, StatusV2::noteOn)) {
        recordNoteOn(rule, sent, trigger);
    } else if (is(sent, StatusV2::CC)) {
        silence(sent);
    }
}

/// With velocity 0 it is an end. A rule that sends that velocity whatever comes does so for other velocities of
/// its trigger, too; one that copies it ends notes by chance.
void NoteLedger::recordNoteOn(std::size_t rule, Bytes sent, Bytes trigger) {
    const auto note = indexOf(sent);
    if (sent[2] == 0) {
        const bool isChance = isNote(trigger) && trigger[2] == 0;
        (isChance ? endedByChance_ : ended_).set(note);
        return;
    }
    const bool isTriggers = is(trigger, StatusV2::noteOn) && indexOf(trigger) == note;
    (isTriggers ? started_[rule].asTriggered : started_[rule].others).set(note);
}

void NoteLedger::silence(Bytes sent) {
    constexpr std::uint8_t allSoundOff = 120;
    constexpr std::uint8_t allNotesOff = 123;
    if (sent[1] != allSoundOff && sent[1] < allNotesOff) {
        return;
    }
    const std::size_t channel = sent[0] & channelMask;
    for (std::size_t note = 0; note < noteCount; ++note) {
        ended_.set(channel * noteCount + note);
    }
}

}  // namespace quillo
