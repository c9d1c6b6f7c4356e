// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/RuleV1.hpp"
#include "persistence/RuleV2.hpp"

namespace quillo {

/// The same rule in the second form. Bytes and the delay are carried over unchanged. A pitch is cut to one
/// byte before it is split into its low 7 bits and the rest; a pitch above 255 is a fatal error.
[[nodiscard]] RuleV2 migrated(const RuleV1& rule);

}  // namespace quillo
