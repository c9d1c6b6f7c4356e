// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>

#include "analysis/AdvisedRules.hpp"
#include "analysis/RuleAdvice.hpp"

namespace quillo {

/// Each finder looks for one thing that may be wrong with one rule of a list. It knows nothing of the other
/// finders; `adviseOn` asks them all.
using Finder = std::optional<Advice>(const AdvisedRules& list, std::size_t rule);

// Of any rule: what it waits for and consumes, and the bytes that were typed in.
Finder findNeverFires;
Finder findImpossibleNumber;
Finder findSwallowsAllMIDI;
Finder findBadSystemExclusive;
Finder findTooLongForVST3;

// Of a rule that can fire: single messages.
Finder findNotInVST3;
Finder findIncompleteOutput;
Finder findSilentNoteOn;
Finder findRestartsNotes;
Finder findDoublesNotes;

// Notes, pedals and bends that stay.
Finder findHangingNotes;
Finder findSwallowedNoteEnds;
Finder findKeepsPedalDown;
Finder findKeepsBend;

// What several rules make of one event.
Finder findSendsTwice;
Finder findBankTooLate;
Finder findProgramUndone;
Finder findStartOnly;

// Messages that belong together.
Finder findTearsFineValue;
Finder findTearsParameter;
Finder findTearsMPE;

}  // namespace quillo
