// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"
#include "persistence/PluginData.hpp"

namespace quillo {

/// The verb `check`: says what a preset holds, one rule a line, and stores it in the current form if asked.
/// Returns the exit status; throws `UsageError` and `CommandFailure`.
[[nodiscard]] int runCheckCommand(std::span<const std::string> words, const Console& console);

/// What a preset is: `generation 3 (current), 2 rules`.
[[nodiscard]] std::string describe(const ReadDocument& document);

}  // namespace quillo
