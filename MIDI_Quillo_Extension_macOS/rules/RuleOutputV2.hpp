// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "midi/Status.hpp"
#include "platform/RealTime.hpp"
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

    [[nodiscard]] bool isCopied() const { return is<RespectiveTriggerByte>(); }
};

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

/// The kinds of channel voice messages that a rule can send.
enum class StatusV2 : std::uint8_t { noteOn, noteOff, CC, programChange, channelPressure, pitchWheel };

/// The status bytes on channel value 0, by case order.
inline constexpr std::array statusNibbles{midi::noteOn,        midi::noteOff,         midi::controlChange,
                                          midi::programChange, midi::channelPressure, midi::pitchWheel};

/// The status byte of a kind with channel bits 0.
[[nodiscard]] constexpr std::uint8_t statusNibble(StatusV2 status) QUILLO_REALTIME {
    return statusNibbles[static_cast<std::size_t>(status)];
}

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
