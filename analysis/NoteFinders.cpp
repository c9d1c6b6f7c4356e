// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Finders.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <string>

#include "words/MessageWords.hpp"

namespace quillo {

namespace {

using Kind = Advice::Kind;

bool isOnNoteOn(const AdvisedRules& list, std::size_t rule) {
    const auto& box = list.reach().box(rule);
    return !box.isEmpty() && box.kind() == EventKind::noteOn;
}

/// The Note On that a rule sends, with whatever velocity.
std::optional<SentMessage> noteOnOf(const AdvisedRules& list, std::size_t rule) {
    const auto messages = sentBy(list.rules()[rule].output);
    const auto found = std::ranges::find(messages, StatusV2::noteOn, &SentMessage::kind);
    return found == messages.end() ? std::nullopt : std::optional(*found);
}

std::string noteAndChannel(const StuckNoteAnalysis::Note& note) {
    return noteWords(note.number) + " on " + channelWords(note.channel);
}

/// "channel 1"; of several channels the first.
std::string firstChannel(AdvisedRules::Channels channels) {
    return channelWords(static_cast<unsigned>(std::countr_zero(channels)));
}

Advice hangingNote(std::size_t rule, const StuckNoteAnalysis::Note& note, const std::string& exception) {
    return {rule, Kind::neverEndsNotes,
            "starts a note that no rule ends: " + noteAndChannel(note) + exception,
            "Let a rule send the note-off on the same channel, or All Notes Off (controller 123). What rings "
            "out by itself, such as a drum, needs none."};
}

std::string onlyByChance(const StuckNoteAnalysis::Chance& chance) {
    return chance.needsNoteOn
               ? "; only a keyboard that sends key releases as Note On with velocity 0 would end it"
               : "; only a key release with velocity 0 would end it";
}

Advice earlyEnd(std::size_t rule, const StuckNoteAnalysis::EarlyEnd& early) {
    const auto start = std::to_string(early.start) + " ms";
    const auto end =
        early.end == 0 ? std::string("is not late") : "only " + std::to_string(early.end) + " ms";
    return {rule, Kind::endsNotesTooSoon,
            "starts a note " + start + " late, but its end " + end +
                ": a key released sooner leaves it sounding",
            "Let a rule send the note-off after " + start + " as well."};
}

/// The channel on which the rule swallows the release of a pedal that nothing else lets up.
std::optional<std::uint8_t> swallowedRelease(const AdvisedRules& list, std::size_t rule, std::uint8_t pedal) {
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        const Event press{EventKind::controlChange, channel, pedal, 127};
        const Event release{EventKind::controlChange, channel, pedal, 0};
        const bool isLetUp = (list.pedalUps(pedal) >> channel & 1U) != 0;
        if (!isLetUp && !list.reach().consumer(press) && list.reach().consumer(release) == rule) {
            return channel;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<Advice> findSilentNoteOn(const AdvisedRules& list, std::size_t rule) {
    const auto note = noteOnOf(list, rule);
    if (!note || note->data2 != 0) {
        return std::nullopt;
    }
    return Advice{rule, Kind::silentNoteOn,
                  "sends Note On with velocity 0, which starts no note but ends one",
                  "Give it a velocity from 1 to 127; to end a note, let it send Note Off."};
}

std::optional<Advice> findRestartsNotes(const AdvisedRules& list, std::size_t rule) {
    const auto note = noteOnOf(list, rule);
    if (!isOnNoteOn(list, rule) || !note || note->data2.value_or(0) == 0) {
        return std::nullopt;
    }
    return Advice{rule, Kind::restartsNotes,
                  "answers each Note On with velocity " + std::to_string(*note->data2) +
                      ": a keyboard that sends key releases as Note On with velocity 0 starts the note "
                      "again when the key is let go",
                  "Take the velocity From Trigger, unless your keyboard sends Note Off."};
}

std::optional<Advice> findDoublesNotes(const AdvisedRules& list, std::size_t rule) {
    const auto note = noteOnOf(list, rule);
    const auto& box = list.reach().box(rule);
    if (!isOnNoteOn(list, rule) || !note || note->delay > 0 || note->data2 == 0) {
        return std::nullopt;
    }
    const bool isOwnNote = !note->data1 || note->data1 == box.number();
    const bool isOwnChannel = list.channelsOf(rule, *note) == box.channels();
    const auto passes = [&](const Event& event) { return !list.reach().consumer(event); };
    if (!isOwnNote || !isOwnChannel || !box.any(passes)) {
        return std::nullopt;
    }
    return Advice{rule, Kind::doublesNotes,
                  "sends each note that passes once more, on the same channel at the same time: it is "
                  "started twice",
                  "Set it to Consume matching, or send on another channel."};
}

std::optional<Advice> findHangingNotes(const AdvisedRules& list, std::size_t rule) {
    const auto notes = list.notes().findings(rule);
    if (notes.neverEnded) {
        return hangingNote(rule, *notes.neverEnded, "");
    }
    if (const auto& chance = notes.endedByChance) {
        return hangingNote(rule, chance->note, onlyByChance(*chance));
    }
    return notes.endedTooSoon ? std::optional(earlyEnd(rule, *notes.endedTooSoon)) : std::nullopt;
}

std::optional<Advice> findSwallowedNoteEnds(const AdvisedRules& list, std::size_t rule) {
    const auto note = list.notes().endSwallowed(rule);
    if (!note) {
        return std::nullopt;
    }
    return Advice{rule, Kind::swallowsNoteEnds,
                  "swallows the end of notes that pass: " + noteAndChannel(*note) + " sounds on",
                  "Set it to Pass through, or let a rule above it send the note-off."};
}

std::optional<Advice> findKeepsPedalDown(const AdvisedRules& list, std::size_t rule) {
    constexpr std::array<std::uint8_t, 4> pedals{64, 66, 67, 69};
    if (!list.reach().consumesAny(rule)) {
        return std::nullopt;
    }
    for (const auto pedal : pedals) {
        if (const auto channel = swallowedRelease(list, rule, pedal)) {
            return Advice{rule, Kind::keepsPedalDown,
                          "swallows the release of a pedal whose press passes: controller " +
                              controllerWords(pedal) + " stays down on " + channelWords(*channel),
                          "Treat both alike, or let a rule send value 0."};
        }
    }
    return std::nullopt;
}

std::optional<Advice> findKeepsBend(const AdvisedRules& list, std::size_t rule) {
    for (const auto& message : sentBy(list.rules()[rule].output)) {
        const bool isFixed = message.data1 && message.data2;
        const bool isCentre = message.data1 == 0 && message.data2 == 64;
        const auto bent =
            static_cast<AdvisedRules::Channels>(list.channelsOf(rule, message) & ~list.centredBends());
        if (message.kind == StatusV2::pitchWheel && isFixed && !isCentre && bent != 0) {
            return Advice{rule, Kind::keepsBend,
                          "bends the pitch, and no rule brings it back: " + firstChannel(bent) +
                              " stays out of tune",
                          "Let a rule send Pitch Wheel 8192, the middle."};
        }
    }
    return std::nullopt;
}

}  // namespace quillo
