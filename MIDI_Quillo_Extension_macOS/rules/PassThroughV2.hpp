// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillo {

/// Whether a rule consumes an event. A consumed event reaches no later rule, and an incoming message that was
/// consumed is not forwarded.
enum class PassThroughV2 : std::uint8_t {
    PassThrough,     ///< never consumes
    EatMatching,     ///< consumes an event that the rule matched
    EatNonMatching,  ///< consumes an event that the rule did not match
};

}  // namespace quillo
