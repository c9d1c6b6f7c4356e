// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"

namespace quillo {

/// A text that is no test; begins with the line that is wrong: `line 4: after the arrow ...`.
class PresetTestError : public std::runtime_error {
public:
    PresetTestError(std::size_t line, const std::string& what)
        : std::runtime_error("line " + std::to_string(line) + ": " + what) {}
};

/// What a preset is meant to do: events that come in, and everything that is to leave.
///
///     # Each note has an echo of its own length.
///     on load → at 0 ms: b1 07 46
///     at 100 ms: 90 3c 64 → at 100 ms: 90 3c 64, at 400 ms: 91 3c 64
///     at 150 ms: 80 3c 40
///         → at 150 ms: 80 3c 40
///         → at 450 ms: 81 3c 40
///     at 500 ms: transport stop → nothing
///
/// An event is what `parseAskedEvent` reads, what leaves is any bytes. "->" is an arrow too. A line that
/// begins with an arrow goes on with what leaves. Lines that begin with "#" and empty ones mean nothing.
struct PresetTest {
    /// A message that is expected to leave.
    struct Wanted {
        SampleTime time = 0;  ///< in milliseconds
        MIDIMessage message;
        std::size_t line = 0;
    };

    /// An event, and what its line wants to leave.
    struct Step {
        TimedEvent event;      ///< in milliseconds
        std::size_t line = 0;  ///< 0 of a loading that the text does not have
        std::vector<Wanted> wanted;
    };

    std::vector<Step> steps;  ///< loading, whether the text has it or not, and then in order of time

    /// Throws a `PresetTestError`.
    [[nodiscard]] static PresetTest read(std::string_view text);
};

/// A place in the order of what leaves where not what is wanted leaves: another message, one too few or one
/// too many.
struct Mismatch {
    SampleTime time = 0;   ///< in milliseconds
    std::size_t line = 0;  ///< that wants the message, or whose event made it leave; 0 of loading
    std::optional<MIDIMessage> wanted;
    std::optional<Departure> got;
};

/// Plays a test to the rules of a preset. Empty where all that is wanted leaves, in this order, and nothing
/// else.
[[nodiscard]] std::vector<Mismatch> mismatches(const PresetTest& test, const EngineProbe& probe);

/// The text of a test that these rules pass: what they make of `events`, which are in milliseconds and in
/// order of time.
[[nodiscard]] std::string recordedTest(const EngineProbe& probe, std::span<const TimedEvent> events);

}  // namespace quillo
