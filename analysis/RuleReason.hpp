// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillo {

/// What became of an event at one rule, and why, in words for a musician:
///
///     fired: sent b0 00 00, c0 30 at once
///     passed over: it waits for channel 2, this is channel 1
///     consumed it: it waits for Note On, this is a CC
///     not reached: rule 3 "Pedal" consumed it
///     not asked: it fires only when the plug-in is loaded
///     switched off
///
/// Passes between binaries, so it holds nothing but values.
struct RuleReason {
    std::string verdict;    ///< "fired"
    std::string words;      ///< "sent b0 00 00, c0 30 at once"; empty where the verdict says all
    bool fired = false;     ///< whether the rule fired
    bool consumed = false;  ///< whether no rule behind this one was tried

    [[nodiscard]] std::string text() const { return words.empty() ? verdict : verdict + ": " + words; }

    bool operator==(const RuleReason&) const = default;
};

}  // namespace quillo
