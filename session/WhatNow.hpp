// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "log/EventLogEntry.hpp"
#include "rules/Rule.hpp"
#include "session/MarkedLog.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// What has come in and what has left, oldest first.
struct KeptLogs {
    std::vector<EventLogEntry> in;
    std::vector<EventLogEntry> out;
    /// Whether the Out log is full: of what left before its oldest entry nothing is known.
    bool forgets = false;
};

/// What leaves because of the events of the In log with the rules `now`, compared with what left with
/// `before`. Only that is marked: not what was sent by hand, by a panic, on load, or because of an event
/// that is no longer in the log. Throws the `FatalError` of rules that no unit can install.
[[nodiscard]] MarkedLog whatNow(const std::vector<Rule>& before, const std::vector<Rule>& now,
                                const KeptLogs& logs, std::uint64_t sampleRate);

/// The same for a model's logs: its rules, and those that ran when the newest event came in.
[[nodiscard]] MarkedLog whatNow(const QuilloModel& model, std::uint64_t sampleRate);

}  // namespace quillo
