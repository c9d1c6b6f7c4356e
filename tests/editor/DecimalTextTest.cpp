// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DecimalText.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace quillo {
namespace {

constexpr auto greatestUnsigned = std::numeric_limits<std::uint64_t>::max();
constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

TEST(DecimalText, AnUnsignedNumberIsTheWholeText) {
    EXPECT_EQ(parseUnsignedDecimal("0", 255), 0U);
    EXPECT_EQ(parseUnsignedDecimal("007", 255), 7U);
    for (const auto* text : {"", " 1", "1 ", "-1", "+1", "1.0", "0x1", "12a", "１"}) {
        EXPECT_EQ(parseUnsignedDecimal(text, 255), std::nullopt) << text;
    }
}

TEST(DecimalText, AnUnsignedNumberIsAtMostTheLimit) {
    for (const std::uint64_t limit : {std::uint64_t{0}, std::uint64_t{5}, std::uint64_t{9},
                                      std::uint64_t{255}, std::uint64_t{65535}, greatestUnsigned - 1}) {
        EXPECT_EQ(parseUnsignedDecimal(std::to_string(limit), limit), limit);
        EXPECT_EQ(parseUnsignedDecimal(std::to_string(limit + 1), limit), std::nullopt) << limit;
    }
    EXPECT_EQ(parseUnsignedDecimal("18446744073709551615", greatestUnsigned), greatestUnsigned);
    EXPECT_EQ(parseUnsignedDecimal("18446744073709551616", greatestUnsigned), std::nullopt);
    EXPECT_EQ(parseUnsignedDecimal(std::string(100, '9'), greatestUnsigned), std::nullopt);
}

TEST(DecimalText, ASignedNumberMayHaveASign) {
    EXPECT_EQ(parseSignedDecimal("-20"), -20);
    EXPECT_EQ(parseSignedDecimal("+20"), 20);
    EXPECT_EQ(parseSignedDecimal("20"), 20);
    for (const auto* text : {"", "-", "+", "--1", "+-1", "1-", "abc"}) {
        EXPECT_EQ(parseSignedDecimal(text), std::nullopt) << text;
    }
}

TEST(DecimalText, ASignedNumberHas64Bits) {
    EXPECT_EQ(parseSignedDecimal(std::to_string(greatest)), greatest);
    EXPECT_EQ(parseSignedDecimal(std::to_string(least)), least);
    EXPECT_EQ(parseSignedDecimal("9223372036854775808"), std::nullopt);
    EXPECT_EQ(parseSignedDecimal("-9223372036854775809"), std::nullopt);
}

}  // namespace
}  // namespace quillo
