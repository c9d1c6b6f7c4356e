// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "engine/MIDIRuleInternal.hpp"
#include "engine/RuleTable.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// A rule list and all that the render thread needs to run it. Immutable once made, so that it is installed
/// by exchanging one pointer and read without copying.
struct CompiledRules {
    std::vector<Rule> rules;                          ///< the list as it was given
    std::vector<MIDIOnLoadRuleInternal> rulesOnLoad;  ///< the on-load rules, in order
    std::vector<MIDIRuleInternal> rulesInternal;      ///< all other rules, in order
    RuleTable table;                                  ///< what `rulesInternal` make of every event
};

}  // namespace quillo
