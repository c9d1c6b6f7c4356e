// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"
#include "hosts/jack/JackOptions.hpp"

namespace quillo {

/// Runs the program as the options say, and returns its exit status. Throws `UsageError`, `CommandFailure`
/// and whatever else goes wrong.
using RunJack = int (*)(const JackOptions& options, const Console& console);

/// Runs without a window, until a signal ends it. Must be called before any other thread is started.
[[nodiscard]] int runWithoutWindow(const JackOptions& options, const Console& console);

/// The program: reads the words, answers what needs no server, and else runs. `runWithWindow` is null in a
/// program that was built without one. Errors are written to the console's error stream; nothing is
/// thrown.
[[nodiscard]] int runJackProgram(std::span<const std::string> words, const Console& console,
                                 RunJack runWithWindow);

}  // namespace quillo
