// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "rules/Rule.hpp"

namespace quillo {

/// What the rules of a run do, in one line of English; of one rule the same as `inPlainWords`:
///
///     "Bass split", notes C1 to B1, 12 rules: when note-on 36 (C1) to 47 (B1) arrives on channel 1 (consume
///     matching), send note-on 48 (C2) to 59 (B2) with the trigger's velocity on channel 2 at once.
[[nodiscard]] std::string runInPlainWords(std::span<const Rule> run);

/// Two sentences in one, which name the first and the last value of a range: "send program 5 at once" and
/// "send program 9 at once" become "send program 5 to 9 at once". The first alone where they do not have as
/// many words.
[[nodiscard]] std::string sentenceFromTo(const std::string& first, const std::string& last);

}  // namespace quillo
