// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "engine/MIDIMessage.hpp"
#include "platform/RealTime.hpp"
#include "rules/RuleOutputV2.hpp"

namespace quillo {

/// The bytes of the message that triggered a rule. Bytes beyond the message's length hold whatever the host
/// left there.
struct TriggerBytes {
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
};

/// Builds the messages of an output whose channel or data bytes come from the triggering message. Made from
/// the output when rules are installed; building allocates nothing.
class Generator {
public:
    explicit Generator(const RuleOutputVariantsV2::Protocol& output) noexcept;
    explicit Generator(const RuleOutputVariantsV2::ProgramChange& output) noexcept;

    /// The output's messages for this trigger.
    [[nodiscard]] MessageList operator()(const TriggerBytes& trigger) const QUILLO_REALTIME;

    bool operator==(const Generator&) const = default;

private:
    /// The value of one nibble or byte: a fixed one, or the trigger's.
    struct Source {
        bool fromTrigger = false;
        std::uint8_t fixed = 0;

        [[nodiscard]] std::uint8_t choose(std::uint8_t triggerByte) const QUILLO_REALTIME {
            return fromTrigger ? triggerByte : fixed;
        }
        bool operator==(const Source&) const = default;
    };
    enum class Shape : std::uint8_t { twoBytes, threeBytes, bankAndProgram };

    [[nodiscard]] static Source source(const GenericByteV2& byte);
    [[nodiscard]] static Source source(const RuleOutputChannelV2& channel);

    Shape shape_;
    std::uint8_t status_ = 0;
    std::uint8_t bank_ = 0;
    Source channel_;
    Source byte1_;
    Source byte2_;
};

}  // namespace quillo
