// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "rules/TaggedUnion.hpp"

namespace quillo {

struct TriggerValueV2Cases {
    /// Must equal the byte compared.
    struct Value {
        std::uint8_t value;
        bool operator==(const Value&) const = default;
    };
    /// Matches every byte.
    struct AnyValue {
        bool operator==(const AnyValue&) const = default;
    };
};

/// What a byte of an incoming message (or its zero-based channel) is compared with.
struct TriggerValueV2 : TriggerValueV2Cases,
                        TaggedUnion<TriggerValueV2Cases::Value, TriggerValueV2Cases::AnyValue> {
    using TaggedUnion::TaggedUnion;
};

}  // namespace quillo
