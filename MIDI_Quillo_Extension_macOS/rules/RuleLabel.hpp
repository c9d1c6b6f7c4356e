// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillo {

/// What a rule is called before its user, at the beginning of a sentence: `Rule 4 "Echo"` for the rule at the
/// position 3. Without a name it is the number alone. A long name is cut, and nothing in it can break the
/// line.
[[nodiscard]] std::string ruleLabel(std::size_t position, std::string_view name = {});

/// The same for a rule that is switched off, by its place among those: `Switched-off rule 1 "Echo"`.
[[nodiscard]] std::string shelvedRuleLabel(std::size_t position, std::string_view name = {});

}  // namespace quillo
