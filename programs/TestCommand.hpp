// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `test`: plays presets the tests that lie beside them, or writes such a test from a recording.
/// Returns the exit status; throws `UsageError`, `CommandFailure` and `FatalError`.
[[nodiscard]] int runTestCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
