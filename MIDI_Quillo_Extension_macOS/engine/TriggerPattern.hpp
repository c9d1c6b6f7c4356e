// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "engine/Generator.hpp"
#include "platform/RealTime.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// A message-based trigger as one comparison: the message's three bytes as a word, under a mask.
class TriggerPattern {
public:
    /// Matches every message.
    TriggerPattern() = default;

    explicit TriggerPattern(const MessageBasedTriggerVariantsV2& trigger);

    [[nodiscard]] bool matches(const TriggerBytes& message) const QUILLO_REALTIME {
        return ((word(message) ^ value_) & mask_) == 0;
    }

    bool operator==(const TriggerPattern&) const = default;

private:
    [[nodiscard]] static std::uint32_t word(const TriggerBytes& message) QUILLO_REALTIME {
        return message.status | (std::uint32_t{message.data1} << 8U) | (std::uint32_t{message.data2} << 16U);
    }

    void require(std::uint32_t value, std::uint32_t mask);
    void requireByte(const TriggerValueV2& value, unsigned position);
    void requireChannel(const TriggerValueV2& channel);
    void requireVoice(const VoiceCategoryTriggerV2& voice);

    std::uint32_t value_ = 0;
    std::uint32_t mask_ = 0;
};

}  // namespace quillo
