// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "engine/FiringCounts.hpp"
#include "engine/MIDIRuleInternal.hpp"
#include "engine/RuleName.hpp"
#include "engine/RuleTable.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// A rule list and all that the render thread needs to run it. Immutable once made, but for what is counted,
/// so that it is installed by exchanging one pointer and read without copying.
struct CompiledRules {
    std::vector<Rule> rules;                          ///< the list as it was given
    std::vector<MIDIOnLoadRuleInternal> rulesOnLoad;  ///< the on-load rules, in order
    std::vector<MIDIRuleInternal> rulesInternal;      ///< all other rules, in order
    RuleTable table;                                  ///< what `rulesInternal` make of every event
    std::vector<RuleName> names;                      ///< of `rules`, as what they send carries them
    FiringCounts counts;                              ///< of `rules`
};

}  // namespace quillo
