// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "rules/RuleOutputV2.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// One rule of the user's ordered list. Any byte values are taken as they are: keeping channels within 0 to
/// 15 and data bytes within 0 to 127 is the editor's duty.
struct Rule {
    RuleOutputV2 output;
    RuleTriggerV2 trigger;
    std::string name;  ///< the user's label, valid UTF-8; no meaning to the engine

    bool operator==(const Rule&) const = default;
};

}  // namespace quillo
