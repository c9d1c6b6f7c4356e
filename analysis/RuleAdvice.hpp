// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo {

/// Something about a rule that its user may not have meant.
struct Advice {
    enum class Kind : std::uint8_t {
        neverFires,          ///< proven: no event whatever makes the rule fire
        impossibleNumber,    ///< it waits for a number above 127
        swallowsAllMIDI,     ///< it consumes all MIDI, or all but MIDI Start, Stop or Continue
        neverEndsNotes,      ///< it starts notes, and no rule ends one of them
        endsNotesTooSoon,    ///< it starts notes later than the release of the key ends them
        swallowsNoteEnds,    ///< it swallows the note-off of notes that pass, and nothing else ends them
        badSystemExclusive,  ///< bytes that do not belong between F0 and F7
        incompleteOutput,    ///< what it sends is no complete MIDI message
        tooLongForVST3,      ///< it sends more system exclusive than a VST3 host can take
        notInVST3,           ///< it waits for what a VST3 host does not deliver, or not for certain
        restartsNotes,       ///< a fixed velocity for each Note On, those of velocity 0 among them
        silentNoteOn,        ///< it sends Note On with velocity 0
        doublesNotes,        ///< it sends the very note that passes
        sendsTwice,          ///< another rule does the same
        bankTooLate,         ///< its bank select follows the program that it is for
        programUndone,       ///< a reset follows its program
        startOnly,           ///< it waits for Start, and no rule waits for Continue
        keepsPedalDown,      ///< it swallows the release of a pedal whose press passes
        keepsBend,           ///< it bends the pitch, and no rule brings it back
        tearsFineValue,      ///< it parts the two halves of a 14-bit controller
        tearsParameter,      ///< it parts the messages of an RPN or NRPN
        tearsMPE,            ///< it sends MPE notes to where their bends do not go
    };

    std::size_t rule = 0;  ///< its position in the list
    Kind kind = Kind::neverFires;
    std::string matter;     ///< goes on from the rule's name: "can never fire: ..."
    std::string wayOut;     ///< a whole sentence
    std::size_t count = 1;  ///< it is said of so many rules of a run; `rule` is the first
};

/// All advice on a rule list that a program can run, in the order of the rules; what goes for consecutive
/// rules of a run is said once. What it claims is true of all events that can come.
[[nodiscard]] std::vector<Advice> adviseOn(const std::vector<Rule>& rules);

/// One piece of advice in two lines:
///
///     3. "Echo" can never fire: rule 2 "Eat" (Consume matching) swallows every event that it waits for.
///        Move it above rule 2.
///
/// Of a run: `3-14. "Bass", each like the first, can never fire: ...`.
[[nodiscard]] std::string adviceText(const std::vector<Rule>& rules, const Advice& advice);

}  // namespace quillo
