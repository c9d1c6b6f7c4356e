// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `diff`: plays a recording to two presets and says where something else leaves, and why. Returns
/// the exit status; throws `UsageError` and `CommandFailure`.
[[nodiscard]] int runDiffCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
