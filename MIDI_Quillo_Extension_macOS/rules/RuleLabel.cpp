// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleLabel.hpp"

#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

std::string label(const char* what, std::size_t position, std::string_view name) {
    constexpr std::size_t longestName = 40;
    const auto number = what + std::to_string(position + 1);
    return name.empty() ? number : number + " " + inQuotes(name, longestName);
}

}  // namespace

std::string ruleLabel(std::size_t position, std::string_view name) {
    return label("Rule ", position, name);
}

std::string shelvedRuleLabel(std::size_t position, std::string_view name) {
    return label("Switched-off rule ", position, name);
}

}  // namespace quillo
