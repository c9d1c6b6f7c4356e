// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "hosts/cli/TellingEvents.hpp"

namespace quillo {

/// Which rules start notes that no rule ends. Watches the trials of all telling events; after them what it says
/// is true of every event.
///
/// A note is ended by its note-off, and by what silences its channel: All Sound Off, All Notes Off, and the mode
/// messages that imply it. When and after which event that is sent is not looked at. A rule that starts the very
/// note that fired it may leave the end to the release of the key, where that is forwarded.
class NoteLedger {
public:
    struct Note {
        std::uint8_t channel;  ///< zero-based
        std::uint8_t number;

        bool operator==(const Note&) const = default;
    };

    explicit NoteLedger(std::size_t ruleCount) : started_(ruleCount) {}

    void watch(const Trial& trial);

    /// A note that the rule starts and no rule ends, if there is one.
    [[nodiscard]] std::optional<Note> neverEnded(std::size_t rule) const;

    /// A note that the rule starts and that ends only where a velocity that is copied from a note is 0.
    [[nodiscard]] std::optional<Note> endedByChance(std::size_t rule) const;

private:
    static constexpr std::size_t channelCount = 16;
    static constexpr std::size_t noteCount = 128;
    using Notes = std::bitset<channelCount * noteCount>;

    struct Started {
        Notes asTriggered;  ///< the note and channel of the note-on that fired the rule
        Notes others;
    };

    /// What the rule starts and nothing ends for certain.
    [[nodiscard]] Notes uncertain(std::size_t rule) const;
    static std::optional<Note> lowest(const Notes& notes);
    static std::size_t indexOf(std::span<const std::uint8_t> message);
    void record(std::size_t rule, std::span<const std::uint8_t> sent, std::span<const std::uint8_t> trigger);
    void recordNoteOn(std::size_t rule, std::span<const std::uint8_t> sent,
                      std::span<const std::uint8_t> trigger);
    void silence(std::span<const std::uint8_t> sent);

    std::vector<Started> started_;
    Notes ended_;
    Notes endedByChance_;
    Notes releasesForwarded_;
};

}  // namespace quillo
