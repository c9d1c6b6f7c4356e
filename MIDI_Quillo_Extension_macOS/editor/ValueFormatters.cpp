// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ValueFormatters.hpp"

#include <algorithm>
#include <limits>

#include "editor/DecimalText.hpp"
#include "editor/MyFormatter.hpp"
#include "midi/Status.hpp"
#include "platform/HexText.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

static_assert(MyFormatter<VelocityFormatter>);
static_assert(MyFormatter<ContollerValueFormatter>);
static_assert(MyFormatter<PressureValueFormatter>);
static_assert(MyFormatter<BankFormatter>);
static_assert(MyFormatter<PitchValueFormatter>);
static_assert(MyFormatter<DelayValueFormatter>);
static_assert(MyFormatter<TriggerValueFormatter>);
static_assert(MyFormatter<SystemExclusiveFormatter>);
static_assert(MyFormatter<NameFormatter>);

namespace {

constexpr std::uint64_t unreadableDataByte = 64;
constexpr std::uint64_t centrePitch = 8192;
constexpr std::uint64_t greatestPitch = 16383;

/// A number of the type's width, at most `greatest`; `unreadable` for any other text.
template <class Number>
Number parseClamped(std::string_view text, std::uint64_t unreadable, std::uint64_t greatest) {
    const auto number = parseUnsignedDecimal(text, std::numeric_limits<Number>::max());
    return static_cast<Number>(std::min(number.value_or(unreadable), greatest));
}

std::uint8_t parseDataByte(std::string_view text) {
    return parseClamped<std::uint8_t>(text, unreadableDataByte, midi::greatestDataByte);
}

std::string formatByte(const GenericByteV2& byte) {
    const auto* fixed = byte.getIf<GenericByteV2::Value>();
    return fixed != nullptr ? std::to_string(fixed->value) : std::string(fromTriggerLabel);
}

/// The value of a hexadecimal digit; 0 for any other character.
unsigned digitValue(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<unsigned>(character - '0');
    }
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 0U;
}

/// Whether a byte of UTF-8 text goes on with the character before it.
bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

std::string VelocityFormatter::format(const Value& value) const {
    return formatByte(value);
}

GenericByteV2 VelocityFormatter::parse(std::string_view text) const {
    return GenericByteV2::Value{parseDataByte(text)};
}

std::string ContollerValueFormatter::format(const Value& value) const {
    return formatByte(value);
}

GenericByteV2 ContollerValueFormatter::parse(std::string_view text) const {
    return GenericByteV2::Value{parseDataByte(text)};
}

std::string PressureValueFormatter::format(Value value) const {
    return std::to_string(value);
}

std::uint8_t PressureValueFormatter::parse(std::string_view text) const {
    return parseDataByte(text);
}

std::string BankFormatter::format(Value value) const {
    return std::to_string(value);
}

std::uint8_t BankFormatter::parse(std::string_view text) const {
    return parseClamped<std::uint8_t>(text, 0, midi::greatestDataByte);
}

std::string PitchValueFormatter::format(Value value) const {
    return std::to_string(value);
}

std::uint16_t PitchValueFormatter::parse(std::string_view text) const {
    return parseClamped<std::uint16_t>(text, centrePitch, greatestPitch);
}

std::string DelayValueFormatter::format(Value value) const {
    return std::to_string(value);
}

std::int64_t DelayValueFormatter::parse(std::string_view text) const {
    return std::max(parseSignedDecimal(text).value_or(0), std::int64_t{0});
}

std::string TriggerValueFormatter::format(const Value& value) const {
    const auto* exact = value.getIf<TriggerValueV2::Value>();
    return exact != nullptr ? std::to_string(exact->value) : std::string(anyLabel);
}

TriggerValueV2 TriggerValueFormatter::parse(std::string_view text) const {
    const auto number = parseUnsignedDecimal(text, std::numeric_limits<std::uint8_t>::max());
    if (!number) {
        return TriggerValueV2::AnyValue{};
    }
    return TriggerValueV2::Value{static_cast<std::uint8_t>(*number)};
}

std::string SystemExclusiveFormatter::format(const Value& value) const {
    return hexText(value, HexCase::upper);
}

std::vector<std::uint8_t> SystemExclusiveFormatter::parse(std::string_view text) const {
    Value bytes;
    unsigned pair = 0;
    bool hasHighDigit = false;
    for (const char character : text) {
        if (character == ' ' || continuesCharacter(character)) {
            continue;
        }
        pair = (pair << 4U) | digitValue(character);
        if (hasHighDigit) {
            bytes.push_back(static_cast<std::uint8_t>(pair & 0xFFU));
        }
        hasHighDigit = !hasHighDigit;
    }
    return bytes;
}

}  // namespace quillo
