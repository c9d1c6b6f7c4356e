// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "commandline/Console.hpp"
#include "persistence/PluginData.hpp"

namespace quillo {

/// The verbs of `midi-quillo`, each with the words behind it. They return the exit status, and throw
/// `UsageError`, `CommandFailure` and, where rules run, `FatalError`.

/// Plays a MIDI file through the rules of a preset into another MIDI file.
[[nodiscard]] int runRenderCommand(std::span<const std::string> words, const Console& console);

/// Says what a preset holds, one rule a line, and stores it in the current form if asked.
[[nodiscard]] int runCheckCommand(std::span<const std::string> words, const Console& console);

/// What a preset is: `generation 3 (current), 2 rules`.
[[nodiscard]] std::string describe(const ReadDocument& document);

/// Says what each rule of a preset makes of an event, and what becomes of the event.
[[nodiscard]] int runExplainCommand(std::span<const std::string> words, const Console& console);

/// Plays a recording to two presets and says where something else leaves, and why.
[[nodiscard]] int runDiffCommand(std::span<const std::string> words, const Console& console);

/// Plays presets the tests that lie beside them, or writes such a test from a recording.
[[nodiscard]] int runTestCommand(std::span<const std::string> words, const Console& console);

/// Lists the presets that come with the program, by task, or hands one of them out.
[[nodiscard]] int runPresetsCommand(std::span<const std::string> words, const Console& console);

/// Says of each line of another tool's file which rules it becomes, or why it is left out, and writes the
/// rules as a preset.
[[nodiscard]] int runImportCommand(std::span<const std::string> words, const Console& console);

/// Plays a host application from a script: one action a line, blank lines skipped, the answers on `out`.
/// Throws nothing. Returns the exit status:
///
/// - 0 when the script was played to its end
/// - 65 at the first line that is no action, which `err` names, and of which nothing is done
/// - 66 when the script cannot be read on
/// - 70 at a fatal error of the unit, whose line is the last on `out`
[[nodiscard]] int runHostCommand(std::istream& script, std::ostream& out, std::ostream& err);

}  // namespace quillo
