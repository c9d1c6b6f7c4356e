// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "analysis/Comparison.hpp"
#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "programs/JSONText.hpp"

namespace quillo {

/// Two presets that have been played the same events.
struct PlayedTwice {
    const EngineProbe& first;
    const EngineProbe& second;
    std::span<const TimedEvent> events;  ///< in microseconds
    const Comparison& comparison;
};

/// What differs, for a musician: the first difference with the reason of each side, as `explain` has it, then
/// all of them side by side, then each rule that fires more often or less:
///
///     The first difference, at 1250 ms: 90 3c 64: note-on 60 (C3), velocity 100, channel 1
///     A:
///       rule 1 "Echo" fired: sent 91 3c 64 after 300 ms
///       the event goes on to the output
///     B:
///       rule 1 "Echo" passed over: it waits for channel 2, this is channel 1
///       the event goes on to the output
///
///     at       in        out of A              | out of B
///     1250 ms  90 3c 64  90 3c 64                90 3c 64
///                        91 3c 64 after 300 ms |
///
///     rule 1 "Echo" fires 1 time less: 1 in A, 0 in B
///
/// Empty where nothing differs.
[[nodiscard]] std::string diffText(const PlayedTwice& played);

/// The same for scripts.
[[nodiscard]] JSONAnswer diffAnswer(const PlayedTwice& played);

}  // namespace quillo
