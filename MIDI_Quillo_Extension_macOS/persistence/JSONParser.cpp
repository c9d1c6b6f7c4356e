// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONParser.hpp"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "persistence/DecodingError.hpp"

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

/// Builds the value from the parser's events and keeps what went wrong.
class ValueBuilder : public nlohmann::json_sax<JSON> {
public:
    /// What stopped the parser; for text that is not JSON also the byte, from 0, at which it stopped.
    struct Failure {
        std::string reason;
        std::optional<std::size_t> offset;
    };

    [[nodiscard]] JSON takeValue() { return std::move(root_); }
    [[nodiscard]] const Failure& failure() const { return failure_; }

    bool null() override { return place(nullptr); }
    bool boolean(bool value) override { return place(value); }
    bool number_integer(std::int64_t value) override { return place(value); }
    bool number_unsigned(std::uint64_t value) override { return place(value); }
    bool number_float(double value, const std::string& text) override;
    bool string(std::string& value) override { return place(std::move(value)); }
    bool binary(JSON::binary_t& value) override { return place(std::move(value)); }
    bool start_object(std::size_t) override { return open(JSON::object()); }
    bool start_array(std::size_t) override { return open(JSON::array()); }
    bool key(std::string& value) override;
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::json::exception& error) override;

private:
    JSON& add(JSON&& value);
    bool place(JSON&& value);
    bool open(JSON&& container);
    bool close();

    JSON root_;
    std::vector<JSON*> open_;
    std::string key_;
    Failure failure_;
};

bool ValueBuilder::number_float(double value, const std::string& text) {
    const auto whole = exactInteger(text);
    if (!whole) {
        return place(value);
    }
    return std::visit([this](auto integer) { return place(integer); }, *whole);
}

bool ValueBuilder::key(std::string& value) {
    key_ = std::move(value);
    return true;
}

JSON& ValueBuilder::add(JSON&& value) {
    if (open_.empty()) {
        return root_ = std::move(value);
    }
    auto& around = *open_.back();
    if (around.is_array()) {
        return around.emplace_back(std::move(value));
    }
    return around[key_] = std::move(value);
}

bool ValueBuilder::place(JSON&& value) {
    add(std::move(value));
    return true;
}

bool ValueBuilder::open(JSON&& container) {
    if (open_.size() == maximumNesting) {
        failure_.reason = "nested deeper than " + std::to_string(maximumNesting) + " levels";
        return false;
    }
    open_.push_back(&add(std::move(container)));
    return true;
}

bool ValueBuilder::close() {
    open_.pop_back();
    return true;
}

/// The library's reason without its error number, its position, what it expected, and the token, which may be
/// of any length and may not be UTF-8.
std::string reasonOf(const nlohmann::json::exception& error) {
    constexpr int numberOverflow = 406;
    if (error.id == numberOverflow) {
        return "a number beyond the range of a double";
    }
    std::string_view text = error.what();
    constexpr std::string_view beforeReason = " - ";
    if (const auto start = text.find(beforeReason); start != std::string_view::npos) {
        text.remove_prefix(start + beforeReason.size());
    }
    return std::string(text.substr(0, text.find(';')));
}

/// The position counts the byte that is wrong, or the end, as well.
bool ValueBuilder::parse_error(std::size_t position, const std::string&,
                               const nlohmann::json::exception& error) {
    failure_ = {reasonOf(error), position - 1};
    return false;
}

std::string_view asText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Line and column; the column alone where the text is one line.
std::string placeOf(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset);
    const auto lastBreak = before.rfind('\n');
    const auto column = lastBreak == std::string_view::npos ? before.size() + 1 : before.size() - lastBreak;
    const auto line = std::ranges::count(before, '\n') + 1;
    const auto inLine =
        text.find('\n') != std::string_view::npos ? "line " + std::to_string(line) + ", " : std::string();
    return inLine + "column " + std::to_string(column);
}

[[noreturn]] void failAt(std::string_view text, const ValueBuilder::Failure& failure) {
    if (!failure.offset) {
        throw DecodingError(failure.reason);
    }
    throw DecodingError("not JSON: " + placeOf(text, *failure.offset) + ": " + failure.reason);
}

/// The library takes a zero byte for the end of the text; it is no part of any JSON.
void refuseZeroByte(std::string_view text) {
    if (const auto zero = text.find('\0'); zero != std::string_view::npos) {
        failAt(text, {"a zero byte", zero});
    }
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

JSON parseJSON(std::span<const std::uint8_t> bytes) {
    const auto text = asText(bytes);
    refuseZeroByte(text);
    ValueBuilder builder;
    if (!JSON::sax_parse(text, &builder)) {
        failAt(text, builder.failure());
    }
    return builder.takeValue();
}

}  // namespace quillo
