// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONParser.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace quillo {
namespace {

ExactInteger unsignedValue(std::uint64_t value) {
    return value;
}

ExactInteger signedValue(std::int64_t value) {
    return value;
}

TEST(ExactInteger, IsTheSameHoweverTheNumberIsWritten) {
    for (const auto* text : {"10", "10.0", "10.000", "1e1", "1E1", "1e+1", "1.0e1", "0.1e2", "100e-1",
                             "0.001e4", "1000.0e-2", "10e0", "10e-0"}) {
        EXPECT_EQ(exactInteger(text), unsignedValue(10)) << text;
    }
}

TEST(ExactInteger, IsZeroForEveryZero) {
    for (const auto* text : {"0", "-0", "0.0", "-0.0", "0e0", "0e5", "0e-5", "0.000e400",
                             "0e99999999999999999999", "0e-99999999999999999999"}) {
        EXPECT_EQ(exactInteger(text), unsignedValue(0)) << text;
    }
}

TEST(ExactInteger, IsSignedBelowZero) {
    EXPECT_EQ(exactInteger("-1"), signedValue(-1));
    EXPECT_EQ(exactInteger("-25.0e1"), signedValue(-250));
}

TEST(ExactInteger, IsNothingForTheSmallestFraction) {
    for (const auto* text :
         {"0.5", "1e-1", "255.0000000000000001", "-0.1", "1e-400", "1.25e-9223372036854775807",
          "1e-99999999999999999999", "9007199254740992.5", "10.01e1"}) {
        EXPECT_EQ(exactInteger(text), std::nullopt) << text;
    }
}

TEST(ExactInteger, ReachesFromTheLeastSignedToTheGreatestUnsigned) {
    EXPECT_EQ(exactInteger("-9223372036854775808"), signedValue(INT64_MIN));
    EXPECT_EQ(exactInteger("-9223372036854775808.0"), signedValue(INT64_MIN));
    EXPECT_EQ(exactInteger("18446744073709551615"), unsignedValue(UINT64_MAX));
    EXPECT_EQ(exactInteger("1.8446744073709551615e19"), unsignedValue(UINT64_MAX));
}

TEST(ExactInteger, IsNothingOneBeyondTheEnds) {
    for (const auto* text : {"-9223372036854775809", "18446744073709551616", "1e20", "1e21", "-1e300",
                             "1e99999999999999999999"}) {
        EXPECT_EQ(exactInteger(text), std::nullopt) << text;
    }
}

TEST(ExactInteger, KeepsDigitsThatADoubleWouldRound) {
    EXPECT_EQ(exactInteger("9007199254740993.0"), unsignedValue(9007199254740993));
}

TEST(ExactInteger, TakesAnotherLocalesDecimalPoint) {
    EXPECT_EQ(exactInteger("5,0"), unsignedValue(5));
    EXPECT_EQ(exactInteger("5,5"), std::nullopt);
}

TEST(ExactInteger, ReadsAMillionDigits) {
    EXPECT_EQ(exactInteger("7." + std::string(1'000'000, '0')), unsignedValue(7));
    EXPECT_EQ(exactInteger(std::string(1'000'000, '7')), std::nullopt);
}

}  // namespace
}  // namespace quillo
