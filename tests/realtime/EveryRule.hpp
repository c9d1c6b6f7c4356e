// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo::test {

/// Rules that combine every kind of trigger with every kind of output and with delays of none, of part of a
/// cycle and of several cycles. None of them consumes anything.
[[nodiscard]] std::vector<Rule> everyRule();

/// One message for each kind of message-based trigger; all but the last three on channel value 5.
inline constexpr std::array<std::array<std::uint8_t, 3>, 7> everyMessage{
    {{0x95, 60, 100}, {0x85, 60, 0}, {0xB5, 7, 90}, {0xC5, 3, 0}, {0xFA, 0, 0}, {0xFB, 0, 0}, {0xFC, 0, 0}}};

/// A system-exclusive output whose message has so many bytes, framing included.
[[nodiscard]] RuleOutputVariantsV2 systemExclusiveOf(std::size_t bytes);

}  // namespace quillo::test
