// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "rules/TaggedUnion.hpp"

namespace quillo {

struct GenericByteV2Cases {
    /// This byte itself.
    struct Value {
        std::uint8_t value;
        bool operator==(const Value&) const = default;
    };
    /// The byte in the same position of the triggering message.
    struct RespectiveTriggerByte {
        bool operator==(const RespectiveTriggerByte&) const = default;
    };
};

/// Where a data byte of an output comes from. A program change's program takes the trigger's first data byte.
struct GenericByteV2 : GenericByteV2Cases,
                       TaggedUnion<GenericByteV2Cases::Value, GenericByteV2Cases::RespectiveTriggerByte> {
    using TaggedUnion::TaggedUnion;
};

}  // namespace quillo
