// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "analysis/EngineProbe.hpp"
#include "analysis/TellingEvents.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"

namespace quillo {

/// Which notes sound on: notes that rules start and no rule ends, and notes that pass while a rule swallows their
/// end. Watches the trials of all telling events; after them what it says is true of every event.
///
/// A note is ended by its note-off, and by what silences its channel: All Sound Off, All Notes Off, and the mode
/// messages that imply it. When and after which event that is sent is not looked at, save for one thing: what a
/// key's press starts and the same key's release ends must not end before it has started, however short the key
/// is held. The release of a key that is forwarded is an end like that of a rule, without a delay.
class NoteLedger {
public:
    struct Note {
        std::uint8_t channel;  ///< zero-based
        std::uint8_t number;

        bool operator==(const Note&) const = default;
    };

    /// A note that ends only where a velocity that is copied from a note is 0.
    struct Chance {
        Note note;
        bool needsNoteOn;  ///< it must be a note-on's; otherwise that of a note-off will do

        bool operator==(const Chance&) const = default;
    };

    /// A note whose end leaves before it does when the key is held for less than the difference.
    struct EarlyEnd {
        Note note;
        SampleTime start;  ///< milliseconds after the key's press
        SampleTime end;    ///< milliseconds after the key's release

        bool operator==(const EarlyEnd&) const = default;
    };

    explicit NoteLedger(std::size_t ruleCount) : started_(ruleCount) {}

    void watch(const Trial& trial);

    /// A note that the rule starts and no rule ends, if there is one.
    [[nodiscard]] std::optional<Note> neverEnded(std::size_t rule) const;

    /// A note that the rule starts and that ends by chance only.
    [[nodiscard]] std::optional<Chance> endedByChance(std::size_t rule) const;

    /// A note that the rule starts later than the release of its key ends it.
    [[nodiscard]] std::optional<EarlyEnd> endedTooSoon(std::size_t rule) const;

    /// A note that is forwarded and that nothing ends for certain, because the rule swallows the note-off; on the
    /// first channel that has such notes, the one next to middle C.
    [[nodiscard]] std::optional<Note> endSwallowed(std::size_t rule) const;

private:
    static constexpr std::size_t channelCount = 16;
    static constexpr std::size_t noteCount = 128;
    using Notes = std::bitset<channelCount * noteCount>;
    using Index = std::uint16_t;  ///< of a note among `Notes`; keys have the index of their own note
    using Bytes = std::span<const std::uint8_t>;

    enum class Fate : std::uint8_t { ended, endedTooSoon, endedByChance, neverEnded };

    struct Start {
        Index note;
        Index key;

        bool operator==(const Start&) const = default;
    };

    struct Started {
        SampleTime delay = 0;
        std::vector<Start> byKeys;  ///< when a key was pressed
        Notes others;
    };

    static Note noteAt(std::size_t index);
    static Index indexOf(Bytes message);
    static std::uint32_t together(std::size_t first, Index key);
    void watchForwarding(const Trial& trial, Bytes trigger);
    void record(const EngineProbe::Firing& firing, Bytes sent, Bytes trigger);
    void recordNoteOn(const EngineProbe::Firing& firing, Bytes sent, Bytes trigger);
    void recordEnd(Bytes sent, Bytes trigger, SampleTime delay);
    void recordSilence(Bytes sent, Bytes trigger, SampleTime delay);

    [[nodiscard]] std::optional<std::size_t> lowest(std::size_t rule, Fate fate) const;
    [[nodiscard]] Fate fateOf(Start start, SampleTime delay) const;
    [[nodiscard]] Fate fateOf(std::size_t note) const;
    [[nodiscard]] std::optional<SampleTime> ownEnd(Start start) const;

    std::vector<Started> started_;
    Notes ended_;            ///< by anything but the release of a key
    Notes endedByReleases_;  ///< by the release of some key
    Notes endedByNoteOns_;   ///< by chance, by velocity 0 of a note-on
    Notes endedByNoteOffs_;  ///< by chance, by velocity 0 of a note-off
    Notes forwarded_;
    Notes releasesForwarded_;
    std::vector<std::optional<std::size_t>> swallowers_ =
        std::vector<std::optional<std::size_t>>(Notes().size());  ///< the rules that swallow note-offs
    std::unordered_map<std::uint32_t, SampleTime> ends_;      ///< the last of each note at a key's release
    std::unordered_map<std::uint32_t, SampleTime> silences_;  ///< the last of each channel, likewise
};

}  // namespace quillo
