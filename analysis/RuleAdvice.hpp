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
    };

    std::size_t rule = 0;  ///< its position in the list
    Kind kind = Kind::neverFires;
    std::string matter;  ///< goes on from the rule's name: "can never fire: ..."
    std::string wayOut;  ///< a whole sentence
};

/// All advice on a rule list that a program can run, in the order of the rules. What it claims is true of all
/// events that can come.
[[nodiscard]] std::vector<Advice> adviseOn(const std::vector<Rule>& rules);

/// One piece of advice in two lines:
///
///     3. "Echo" can never fire: rule 2 "Eat" (Consume matching) swallows every event that it waits for.
///        Move it above rule 2.
[[nodiscard]] std::string adviceText(const std::vector<Rule>& rules, const Advice& advice);

}  // namespace quillo
