// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "engine/MessageList.hpp"

namespace quillo {

/// A delayed output that waits.
struct WaitingOutput {
    std::uint64_t number = 0;  ///< names it: no other ever has its number
    double secondsToGo = 0.0;
    MessageList messages;
    std::string ruleName;  ///< as it was when the rule fired; empty for an unnamed rule

    bool operator==(const WaitingOutput&) const = default;
};

}  // namespace quillo
