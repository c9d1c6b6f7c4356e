// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `import`: says of each line of another tool's file which rules it becomes, or why it is left out,
/// and writes the rules as a preset. Returns the exit status; throws `UsageError` and `CommandFailure`.
[[nodiscard]] int runImportCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
