// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "offline/Score.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

/// What verbs play, and the rules that they play it to. What is wrong with a file throws a `CommandFailure`
/// that begins with its name.

/// With a stream "-" is that stream.
[[nodiscard]] Score readScore(const std::string& path, InputReading reading, std::uint32_t sampleRate,
                              std::istream* standardInput = nullptr);

/// The score as a unit sees it that `render` plays: it is loaded and the host's transport starts before the
/// messages, and the transport stops at the end.
[[nodiscard]] std::vector<TimedEvent> eventsOf(const Score& score);

/// "2 SysEx or escape events were left out, 7 bytes: rules never see them", in a line of its own. Nothing
/// where none was.
void writeLeftOut(const Score::LeftOut& leftOut, std::ostream& err);

/// Runs `step`, in which a fatal error is the fault of the preset at `path`: it becomes a `CommandFailure`
/// with `status`.
template <class Step>
auto blamingPreset(const std::string& path, int status, Step step) {
    try {
        return step();
    } catch (const FatalError& error) {
        throw CommandFailure(status, inputName(path) + ": " + wordsOf(error));
    }
}

/// The rules of a preset. Those that no program can run are damaged ones.
[[nodiscard]] EngineProbe readProbe(const std::string& path, InputReading reading);

/// Runs a verb whose statuses are those of programs that compare: any failure ends it with
/// `exitTrouble`. Wrong arguments stay what they are.
[[nodiscard]] int runComparing(const std::function<int()>& verb);

}  // namespace quillo
