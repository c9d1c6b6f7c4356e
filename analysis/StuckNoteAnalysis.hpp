// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "analysis/RuleReach.hpp"
#include "analysis/SentMessage.hpp"
#include "engine/SampleTime.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleOutputV2.hpp"

namespace quillo {

/// Which notes sound on: notes that rules start and no rule ends, and notes that pass while a rule swallows
/// their end. What it says is true of every event that can come.
///
/// A note is ended by its note-off, and by what silences its channel: All Sound Off, All Notes Off, and the
/// mode messages that imply it. When and after which event that is sent is not looked at, save for one thing:
/// what a key's press starts and the same key's release ends must not end before it has started, however
/// short the key is held. The release of a key that is forwarded is an end like that of a rule, without a
/// delay. Notes on channel 10 are drums, which ring out by themselves: none of them sounds on.
///
/// Of many notes the example is one on the first channel, the first from middle C upwards.
class StuckNoteAnalysis {
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

    /// What is wrong with the notes that one rule starts.
    struct Findings {
        std::optional<Note> neverEnded;
        std::optional<Chance> endedByChance;
        std::optional<EarlyEnd> endedTooSoon;
    };

    /// Both must outlive it.
    StuckNoteAnalysis(const std::vector<Rule>& rules, const RuleReach& reach);

    [[nodiscard]] Findings findings(std::size_t rule) const;

    /// A note that is forwarded and that nothing ends for certain, because the rule swallows the note-off.
    [[nodiscard]] std::optional<Note> endSwallowed(std::size_t rule) const;

private:
    static constexpr std::size_t channelCount = 16;
    static constexpr std::size_t noteCount = 128;
    static constexpr std::size_t drumChannel = 9;
    static constexpr std::size_t keyCount = channelCount * noteCount;
    using Notes = std::bitset<keyCount>;
    using Index = std::size_t;  ///< of a note among `Notes`; keys have the index of their own note
    /// By the key that is released: the delay of the last end; -1 where there is none.
    using EndsByKey = std::array<SampleTime, keyCount>;

    /// What one rule sends when one event fires it: a note or its end, or a controller.
    struct Sending {
        Event event;
        StatusV2 kind;
        Index note;           ///< of a controller, too: its number in place of the note's
        std::uint8_t data2;   ///< the velocity or value
        bool copiesVelocity;  ///< the velocity is a note's, of which nothing is known

        [[nodiscard]] bool starts() const;
        [[nodiscard]] bool ends() const;
        [[nodiscard]] bool silences() const;
        [[nodiscard]] bool isOnRelease() const { return event.kind == EventKind::noteOff; }
    };

    template <class Visit>
    void forEachSending(std::size_t rule, const SentMessage& message, Visit visit) const;
    static Note noteAt(Index index);
    static Index keyOf(const Event& event);
    static void keepLast(std::unique_ptr<EndsByKey>& ends, const Event& release, SampleTime delay);
    void recordEnd(const Sending& sending, SampleTime delay);
    void recordNoteEnd(const Sending& sending, SampleTime delay);
    void recordSilence(const Sending& sending, SampleTime delay);
    [[nodiscard]] bool isEndedAnyway(Index note) const;
    [[nodiscard]] bool isEnded(Index note) const;
    [[nodiscard]] std::optional<SampleTime> ownEnd(Index note, Index key) const;

    const std::vector<Rule>& rules_;
    const RuleReach& reach_;
    Notes ended_;                         ///< by anything but the release of a key
    Notes endedByReleases_;               ///< by the release of some key
    Notes endedByNoteOns_;                ///< by chance, by velocity 0 of a note-on
    Notes endedByNoteOffs_;               ///< by chance, by velocity 0 of a note-off
    std::bitset<channelCount> silenced_;  ///< channels, by anything but the release of a key
    std::bitset<channelCount> silencedByReleases_;
    std::array<std::unique_ptr<EndsByKey>, keyCount> ends_;          ///< of each note
    std::array<std::unique_ptr<EndsByKey>, channelCount> silences_;  ///< of each channel
};

}  // namespace quillo
