// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DecimalText.hpp"

#include <limits>

namespace quillo {

std::optional<std::uint64_t> parseUnsignedDecimal(std::string_view text, std::uint64_t limit) {
    if (text.empty()) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') {
            return std::nullopt;
        }
        const auto digit = static_cast<std::uint64_t>(character - '0');
        if (number > (limit - digit) / 10 || digit > limit) {
            return std::nullopt;
        }
        number = 10 * number + digit;
    }
    return number;
}

std::optional<std::int64_t> parseSignedDecimal(std::string_view text) {
    constexpr auto greatest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto magnitude = parseUnsignedDecimal(text, negative ? greatest + 1 : greatest);
    if (!magnitude) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(negative ? 0 - *magnitude : *magnitude);
}

std::string withCommas(std::uint64_t number) {
    auto digits = std::to_string(number);
    for (auto place = digits.size(); place > 3;) {
        place -= 3;
        digits.insert(place, 1, ',');
    }
    return digits;
}

}  // namespace quillo
