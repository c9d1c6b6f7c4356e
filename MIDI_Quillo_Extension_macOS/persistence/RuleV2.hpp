// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/RuleV1.hpp"
#include "rules/RuleOutputV2.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// A rule of a document from the time before rules had names. Read from either older form: as a
/// `RuleV2Helper`, else as a `RuleV1` that is then migrated.
struct RuleV2 {
    RuleOutputV2 output;
    RuleTriggerV2 trigger;

    bool operator==(const RuleV2&) const = default;
};

/// A nameless rule exactly as the second form stores it.
struct RuleV2Helper {
    RuleOutputV2 output;
    RuleTriggerV2 trigger;
};

/// The same rule in the second form. Bytes and the delay are carried over unchanged. A pitch is cut to one
/// byte before it is split into its low 7 bits and the rest; a pitch above 255 is a fatal error.
[[nodiscard]] RuleV2 migrated(const RuleV1& rule);

}  // namespace quillo
