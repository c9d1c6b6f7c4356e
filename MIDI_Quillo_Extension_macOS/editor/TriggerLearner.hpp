// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// A trigger that is offered because something was played.
struct TriggerOffer {
    /// Which of the rows for one and the same control or note.
    enum class Row : std::uint8_t { any, last, other, pair };

    /// What names the offer while its values change: what was played, and the row.
    struct Key {
        std::uint16_t played = 0;
        Row row = Row::any;
        bool operator==(const Key&) const = default;
    };

    Key key;
    std::string words;                       ///< "CC 64 : Sustain, value 127, channel 1"
    std::string remark;                      ///< "last value"
    std::vector<RuleTriggerEntry> triggers;  ///< one; two for a note's beginning and end

    bool operator==(const TriggerOffer&) const = default;
};

/// The offers of `fresh` in the order in which they are shown already; what is new comes behind.
[[nodiscard]] std::vector<TriggerOffer> inShownOrder(const std::vector<TriggerOffer>& shown,
                                                     std::vector<TriggerOffer> fresh);

/// Finds out which trigger the player means. What moved most comes first; what moved long ago counts less and
/// less, so that the right control wins after the wrong one was tried. A step by one up and down is no
/// movement: worn controls tremble. A note that sounds while a control moves is taken for the touch of it, as
/// faders send one, and stays behind it.
///
/// What no rule can wait for (clock, pressure, pitch bend) is passed over. Time is the caller's. [main]
class TriggerLearner {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// After this long a movement counts half.
    static constexpr std::chrono::seconds halfLife{2};

    /// Times never go back.
    void hear(const EventLogEntryVariants& event, Time now);

    /// What to offer for all that was heard, the likeliest first.
    [[nodiscard]] std::vector<TriggerOffer> offers() const;

private:
    /// A control, a note, a program or a command, and how it was played.
    struct Source {
        std::uint16_t played = 0;  ///< names it: its status, and what of its data belongs to the name
        RuleTriggerEntry trigger;  ///< of its last event
        double movement = 0;       ///< as it counted at `moved`
        Time moved;
        unsigned times = 0;

        // Of a control.
        std::uint8_t last = 0;
        std::optional<std::uint8_t> before;  ///< the value before the last one that was another
        bool isSwitch = true;                ///< never had a third value
        std::uint8_t least = 0;
        std::uint8_t greatest = 0;
        std::uint8_t rest = 0;  ///< the value around which it may tremble

        // Of a note.
        bool sounds = false;
        bool wasPressed = false;
        bool endsBySilence = false;            ///< a note-on of velocity 0 stood for its end
        std::optional<std::uint16_t> touches;  ///< the control that moved while it sounded
    };

    Source& source(std::uint16_t played);
    [[nodiscard]] const Source* find(std::uint16_t played) const;
    void count(Source& source, double movement, Time now);
    void hearControl(Source& control, std::uint8_t value, Time now);
    void hearNoteOn(Source& note, std::uint8_t velocity, Time now);
    [[nodiscard]] double rank(const Source& source) const;
    static void offer(const Source& source, std::vector<TriggerOffer>& offers);
    static void offerControl(const Source& control, std::vector<TriggerOffer>& offers);
    static void offerNote(const Source& note, std::vector<TriggerOffer>& offers);

    std::vector<Source> sources_;  ///< in the order in which they were first heard
};

}  // namespace quillo
