// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The program: runs the verb that the words name, and returns the exit status. Errors are reported
/// on the console's error stream; nothing is thrown.
[[nodiscard]] int runCommandLine(std::span<const std::string> words, const Console& console);

}  // namespace quillo
