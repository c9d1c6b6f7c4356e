// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "rules/TaggedUnion.hpp"

namespace quillo {

struct RuleOutputChannelV2Cases {
    /// A zero-based channel, 0 to 15.
    struct Value {
        std::uint8_t value;
        bool operator==(const Value&) const = default;
    };
    /// The low nibble of the triggering message's status byte.
    struct TriggerChannel {
        bool operator==(const TriggerChannel&) const = default;
    };
};

/// Where the channel of an output comes from.
struct RuleOutputChannelV2
    : RuleOutputChannelV2Cases,
      TaggedUnion<RuleOutputChannelV2Cases::Value, RuleOutputChannelV2Cases::TriggerChannel> {
    using TaggedUnion::TaggedUnion;
};

}  // namespace quillo
