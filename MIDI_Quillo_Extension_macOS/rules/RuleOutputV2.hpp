// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "rules/GenericByteV2.hpp"
#include "rules/RuleOutputChannelV2.hpp"
#include "rules/StatusV2.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

/// How long after its trigger an output is due.
struct DelayV2 {
    std::int64_t ms = 0;  ///< milliseconds, at least 0

    bool operator==(const DelayV2&) const = default;
};

struct StatusByteV2Cases {
    /// The status with channel bits 0.
    struct JustStatus {
        StatusV2 status;
        bool operator==(const JustStatus&) const = default;
    };
    struct WithChannel {
        StatusV2 status;
        RuleOutputChannelV2 channel;
        bool operator==(const WithChannel&) const = default;
    };
};

/// The status byte of an output message.
struct StatusByteV2 : StatusByteV2Cases,
                      TaggedUnion<StatusByteV2Cases::JustStatus, StatusByteV2Cases::WithChannel> {
    using TaggedUnion::TaggedUnion;
};

struct RuleOutputVariantsV2Cases {
    /// A channel voice message of two bytes, or of three when the second data byte is there.
    struct Protocol {
        StatusByteV2 status;
        GenericByteV2 byte1;
        std::optional<GenericByteV2> byte2;
        bool operator==(const Protocol&) const = default;
    };
    /// Two messages: a bank select (controller 0) and then a program change.
    struct ProgramChange {
        RuleOutputChannelV2 channel;
        std::uint8_t bank;
        GenericByteV2 program;
        bool operator==(const ProgramChange&) const = default;
    };
    /// The body of a system-exclusive message; the engine adds the framing 0xF0 and 0xF7.
    struct SystemExclusive {
        std::vector<std::uint8_t> body;
        bool operator==(const SystemExclusive&) const = default;
    };
};

/// What a rule sends.
struct RuleOutputVariantsV2
    : RuleOutputVariantsV2Cases,
      TaggedUnion<RuleOutputVariantsV2Cases::Protocol, RuleOutputVariantsV2Cases::ProgramChange,
                  RuleOutputVariantsV2Cases::SystemExclusive> {
    using TaggedUnion::TaggedUnion;
};

/// What a rule sends, and when.
struct RuleOutputV2 {
    RuleOutputVariantsV2 message;
    DelayV2 delay;

    bool operator==(const RuleOutputV2&) const = default;
};

}  // namespace quillo
