// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `explain`: says what each rule of a preset makes of an event, and what becomes of the event.
/// Returns the exit status; throws `UsageError`, `CommandFailure` and `FatalError`.
[[nodiscard]] int runExplainCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
