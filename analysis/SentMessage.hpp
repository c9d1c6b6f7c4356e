// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/SampleTime.hpp"
#include "rules/RuleOutputV2.hpp"

namespace quillo {

/// A channel message that a rule sends, for all events that fire it at once: what has no value is the
/// trigger's own.
struct SentMessage {
    StatusV2 kind = StatusV2::noteOn;
    std::optional<std::uint8_t> channel;  ///< zero-based
    std::optional<std::uint8_t> data1;
    std::optional<std::uint8_t> data2;  ///< 0 in a message that has one data byte
    SampleTime delay = 0;               ///< milliseconds

    [[nodiscard]] bool isController(std::uint8_t controller) const {
        return kind == StatusV2::CC && data1 == controller;
    }

    std::strong_ordering operator<=>(const SentMessage&) const = default;
};

/// What an output sends, in order. Empty for system exclusive, and for what is no complete message.
[[nodiscard]] std::vector<SentMessage> sentBy(const RuleOutputV2& output);

}  // namespace quillo
