// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo {

/// A few rules that show what cards look like.
[[nodiscard]] std::vector<Rule> demoRules();

/// Rules that are seen at work: they split a keyboard, call strings by a pedal, repeat a note, and stop with
/// the host.
[[nodiscard]] std::vector<Rule> performanceRules();

/// The demo rules over and over, as many as asked for, each under its number.
[[nodiscard]] std::vector<Rule> manyRules(std::size_t count);

/// So many runs, each of as many rules: they wait for notes, and the same is sent for each.
[[nodiscard]] std::vector<Rule> manyRuns(std::size_t runs, std::size_t rulesEach);

}  // namespace quillo
