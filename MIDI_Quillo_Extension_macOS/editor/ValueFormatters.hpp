// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rules/RuleOutputV2.hpp"
#include "rules/RuleTriggerV2.hpp"

/// The formatters behind every field that is typed into. Numbers are decimal and the whole text: an empty
/// one, one with any other character, and one too large for its type is unreadable.
namespace quillo {

/// A velocity, 0 to 127, or "From Trigger". Unreadable text is 64 and larger numbers are 127. Parsing never
/// yields "From Trigger": that is chosen from a menu.
struct VelocityFormatter {
    using Value = GenericByteV2;
    [[nodiscard]] std::string format(const Value& value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const VelocityFormatter&) const = default;
};

/// The value of a controller; in all the same as a velocity, its 64 included.
struct ContollerValueFormatter {
    using Value = GenericByteV2;
    [[nodiscard]] std::string format(const Value& value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const ContollerValueFormatter&) const = default;
};

/// A channel pressure, 0 to 127. Unreadable text is 64 and larger numbers are 127.
struct PressureValueFormatter {
    using Value = std::uint8_t;
    [[nodiscard]] std::string format(Value value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const PressureValueFormatter&) const = default;
};

/// A bank, 0 to 127. Unreadable text is 0 and larger numbers are 127.
struct BankFormatter {
    using Value = std::uint8_t;
    [[nodiscard]] std::string format(Value value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const BankFormatter&) const = default;
};

/// A position of the pitch wheel, 0 to 16383. Unreadable text is the centre, 8192, and larger numbers are
/// 16383.
struct PitchValueFormatter {
    using Value = std::uint16_t;
    [[nodiscard]] std::string format(Value value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const PitchValueFormatter&) const = default;
};

/// A delay in milliseconds, without an upper bound. Unreadable text and negative numbers are 0.
struct DelayValueFormatter {
    using Value = std::int64_t;
    [[nodiscard]] std::string format(Value value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const DelayValueFormatter&) const = default;
};

/// A byte that a trigger compares with, 0 to 255, or "Any", which unreadable text is, too.
struct TriggerValueFormatter {
    using Value = TriggerValueV2;
    [[nodiscard]] std::string format(const Value& value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const TriggerValueFormatter&) const = default;
};

/// Bytes as pairs of hexadecimal digits: "F0 7E 7F F7". Blanks part pieces but fill nothing up: the digits of
/// all pieces are taken in pairs, and a last one without a partner is dropped. Any other character counts as
/// the digit 0. Neither framing nor data bytes above 127 are looked at.
struct SystemExclusiveFormatter {
    using Value = std::vector<std::uint8_t>;
    [[nodiscard]] std::string format(const Value& value) const;
    [[nodiscard]] Value parse(std::string_view text) const;
    bool operator==(const SystemExclusiveFormatter&) const = default;
};

/// A rule's name: the text itself.
struct NameFormatter {
    using Value = std::string;
    [[nodiscard]] std::string format(const Value& value) const { return value; }
    [[nodiscard]] Value parse(std::string_view text) const { return Value(text); }
    bool operator==(const NameFormatter&) const = default;
};

}  // namespace quillo
