// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "editor/DecimalText.hpp"
#include "editor/MyFormatter.hpp"
#include "rules/RuleOutputV2.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// Values that are, or may be, one number.
template <class Value>
concept Steppable =
    std::integral<Value> || std::same_as<Value, GenericByteV2> || std::same_as<Value, TriggerValueV2>;

/// The greatest number that steps lead to, where that is less than what can be typed: no data byte of a
/// message is greater than 127, and a trigger that waits for one never fires.
template <class Value>
inline constexpr std::int64_t greatestStepped =
    std::same_as<Value, TriggerValueV2> ? 127 : std::numeric_limits<std::int64_t>::max();

/// The value that lies `steps` above `value`: never below zero, and above bounded by `greatestStepped` and
/// the formatter; a greater one that was typed stays. Nothing when the value is not a number now ("Any"), and
/// when the formatter cannot read the sum.
template <MyFormatter Formatter>
    requires Steppable<typename Formatter::Value>
[[nodiscard]] std::optional<typename Formatter::Value> stepped(const Formatter& formatter,
                                                               const typename Formatter::Value& value,
                                                               int steps) {
    const auto number = parseSignedDecimal(formatter.format(value));
    if (!number) {
        return std::nullopt;
    }
    const auto room = std::numeric_limits<std::int64_t>::max() - std::max(steps, 0);
    const auto wanted = std::max<std::int64_t>(0, std::min(*number, room) + steps);
    const auto sum = std::min(wanted, std::max(*number, greatestStepped<typename Formatter::Value>));
    const auto result = formatter.parse(std::to_string(sum));
    const auto reached = parseSignedDecimal(formatter.format(result));
    const bool onTheWay = reached && (steps > 0 ? *reached >= *number : *reached <= *number);
    return onTheWay ? std::optional(result) : std::nullopt;
}

}  // namespace quillo
