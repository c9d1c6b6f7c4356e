// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `presets`: lists the presets that come with the program, by task, or hands one of them out.
/// Returns the exit status; throws `UsageError` and `CommandFailure`.
[[nodiscard]] int runPresetsCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
