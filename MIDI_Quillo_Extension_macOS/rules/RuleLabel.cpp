// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleLabel.hpp"

#include "platform/QuotedText.hpp"

namespace quillo {

std::string ruleLabel(std::size_t position, std::string_view name) {
    constexpr std::size_t longestName = 40;
    const auto number = "Rule " + std::to_string(position + 1);
    return name.empty() ? number : number + " " + inQuotes(name, longestName);
}

}  // namespace quillo
