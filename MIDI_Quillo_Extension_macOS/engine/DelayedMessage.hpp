// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>

#include "engine/MIDIMessage.hpp"
#include "engine/RuleName.hpp"
#include "engine/SampleTime.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// An output that waits for its time. Two are equal when both times and messages are.
struct DelayedMessage {
    SampleTime time = 0;  ///< when it is due
    MessageList message;
    RuleName ruleName{};  ///< of the rule that sends it

    bool operator==(const DelayedMessage& other) const {
        return time == other.time && message == other.message;
    }

    /// Reversed on purpose: the earliest is the greatest, as queues of the greatest first need it. The
    /// messages take no part. `MyBinaryHeap` does not need it: it compares times alone.
    friend std::weak_ordering operator<=>(const DelayedMessage& a, const DelayedMessage& b) QUILLO_REALTIME {
        return b.time <=> a.time;
    }
};

}  // namespace quillo
