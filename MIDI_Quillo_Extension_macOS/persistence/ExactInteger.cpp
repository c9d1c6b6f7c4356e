// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ExactInteger.hpp"

#include <algorithm>
#include <charconv>
#include <string>
#include <system_error>

namespace quillo {

namespace {

/// A decimal number as digits times a power of ten.
struct Decimal {
    bool negative = false;
    std::string digits;  ///< without zeros at their end; empty for 0
    std::int64_t exponent = 0;
};

/// More digits than any 64-bit number has.
constexpr std::int64_t tooManyDigits = 21;

/// Far beyond the length of any text, so that a fraction can be taken off without an overflow.
constexpr std::int64_t greatestExponent = std::int64_t{1} << 60;

std::int64_t parseExponent(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t exponent = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc{}) {
        exponent = text.starts_with('-') ? -greatestExponent : greatestExponent;
    }
    return std::clamp(exponent, -greatestExponent, greatestExponent);
}

void trimZeros(Decimal& decimal) {
    while (decimal.digits.ends_with('0')) {
        decimal.digits.pop_back();
        ++decimal.exponent;
    }
}

/// Whatever stands between the digits is taken for the decimal point: it depends on the process's locale.
Decimal parseDecimal(std::string_view number) {
    Decimal decimal;
    if (number.starts_with('-')) {
        decimal.negative = true;
        number.remove_prefix(1);
    }
    const auto exponentMark = number.find_first_of("eE");
    const auto mantissa = number.substr(0, exponentMark);
    if (exponentMark != std::string_view::npos) {
        decimal.exponent = parseExponent(number.substr(exponentMark + 1));
    }
    const auto point = mantissa.find_first_not_of("0123456789");
    decimal.digits = mantissa.substr(0, point);
    if (point != std::string_view::npos) {
        const auto fraction = mantissa.substr(mantissa.find_first_of("0123456789", point));
        decimal.digits += fraction;
        decimal.exponent -= static_cast<std::int64_t>(fraction.size());
    }
    trimZeros(decimal);
    return decimal;
}

template <class Integer>
std::optional<ExactInteger> parseInteger(const std::string& text) {
    Integer value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc{}) {
        return std::nullopt;
    }
    return ExactInteger(value);
}

}  // namespace

std::optional<ExactInteger> exactInteger(std::string_view number) {
    auto decimal = parseDecimal(number);
    if (decimal.digits.empty()) {
        return ExactInteger(std::uint64_t{0});
    }
    if (decimal.exponent < 0 || decimal.exponent >= tooManyDigits) {
        return std::nullopt;
    }
    decimal.digits.append(static_cast<std::size_t>(decimal.exponent), '0');
    return decimal.negative ? parseInteger<std::int64_t>("-" + decimal.digits)
                            : parseInteger<std::uint64_t>(decimal.digits);
}

}  // namespace quillo
