// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commandline/Console.hpp"
#include "hosts/jack/JackOptions.hpp"

namespace quillo {

/// Runs with the editor in a window, until that is closed or a signal ends it. See `RunJack`; what goes wrong
/// once JUCE runs is told on the console's error stream.
[[nodiscard]] int runWithWindow(const JackOptions& options, const Console& console);

}  // namespace quillo
