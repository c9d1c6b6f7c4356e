// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

#include "commandline/Console.hpp"

namespace quillo {

/// The verb `render`: plays a MIDI file through the rules of a preset into another MIDI file. Returns the
/// exit status; throws `UsageError`, `CommandFailure` and `FatalError`.
[[nodiscard]] int runRenderCommand(std::span<const std::string> words, const Console& console);

}  // namespace quillo
