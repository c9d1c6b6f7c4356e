// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/Generator.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// What a trigger asks of a message, in the order in which one looks: is it the right kind of message, on the
/// right channel, with the right first and second data byte?
enum class TriggerCondition : std::uint8_t { kind, channel, data1, data2 };

/// A message-based trigger as one comparison: the message's three bytes as a word, under a mask.
class TriggerPattern {
public:
    /// The positions of a message's bytes.
    static constexpr unsigned status = 0;
    static constexpr unsigned data1 = 1;
    static constexpr unsigned data2 = 2;

    /// Matches every message.
    TriggerPattern() = default;

    explicit TriggerPattern(const MessageBasedTriggerVariantsV2& trigger);

    /// The first condition that the message does not meet; none when the pattern matches it.
    [[nodiscard]] std::optional<TriggerCondition> firstFailure(const TriggerBytes& message) const;

    /// The byte that it asks for at a position; nothing where more than one will do.
    [[nodiscard]] std::optional<std::uint8_t> byte(unsigned position) const;

    /// The upper four bits of the status that it asks for.
    [[nodiscard]] std::size_t kind() const { return (value_ >> 4U) & 0x0FU; }

    /// Whether it asks for a channel that no message has.
    [[nodiscard]] bool matchesNothing() const { return (mask_ & impossibleBit) != 0; }

    bool operator==(const TriggerPattern&) const = default;

private:
    /// A bit that no message word has: a pattern that requires it matches nothing.
    static constexpr std::uint32_t impossibleBit = 0x8000'0000;

    void require(std::uint32_t value, std::uint32_t mask);
    void requireByte(const TriggerValueV2& value, unsigned position);
    void requireChannel(const TriggerValueV2& channel);
    void requireVoice(const VoiceCategoryTriggerV2& voice);

    std::uint32_t value_ = 0;
    std::uint32_t mask_ = 0;
};

}  // namespace quillo
