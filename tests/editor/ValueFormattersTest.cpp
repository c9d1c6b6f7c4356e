// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ValueFormatters.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// Texts of every kind: digits, signs, letters, blanks, bytes that are no UTF-8.
std::string randomText(std::mt19937& random) {
    constexpr std::string_view likely = "0123456789abcdefABCDEFgx -+.\t\n";
    std::string text;
    for (auto length = random() % 12; length > 0; --length) {
        const auto choice = random() % 10;
        text += choice == 0 ? static_cast<char>(random() % 256) : likely[random() % likely.size()];
    }
    return text;
}

/// Whatever the text, `isValid` holds for what is parsed, and formatting it and parsing again gives it back.
template <class Formatter, class IsValid>
void expectAlwaysValid(IsValid isValid) {
    const Formatter formatter;
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        const auto text = randomText(random);
        const auto value = formatter.parse(text);
        ASSERT_TRUE(isValid(value)) << text;
        ASSERT_EQ(formatter.parse(formatter.format(value)), value) << text;
    }
}

bool isFixedDataByte(const GenericByteV2& byte) {
    const auto* fixed = byte.getIf<GenericByteV2::Value>();
    return fixed != nullptr && fixed->value <= 127;
}

template <class Formatter>
class DataByteFormatter : public testing::Test {};

using DataByteFormatters = testing::Types<VelocityFormatter, ContollerValueFormatter>;
TYPED_TEST_SUITE(DataByteFormatter, DataByteFormatters);

TYPED_TEST(DataByteFormatter, ShowsANumberOrFromTrigger) {
    EXPECT_EQ(TypeParam().format(byte(0)), "0");
    EXPECT_EQ(TypeParam().format(byte(127)), "127");
    EXPECT_EQ(TypeParam().format(byte(255)), "255");
    EXPECT_EQ(TypeParam().format(triggerByte), "From Trigger");
}

TYPED_TEST(DataByteFormatter, EveryDataByteComesBack) {
    for (unsigned value = 0; value <= 127; ++value) {
        EXPECT_EQ(TypeParam().parse(std::to_string(value)), byte(static_cast<std::uint8_t>(value)));
    }
}

TYPED_TEST(DataByteFormatter, LargerNumbersAreThe127) {
    for (unsigned value = 128; value <= 255; ++value) {
        EXPECT_EQ(TypeParam().parse(std::to_string(value)), byte(127)) << value;
    }
}

TYPED_TEST(DataByteFormatter, WhatIsUnreadableIsThe64) {
    for (const auto* text : {"", "abc", "-5", "256", "1000", " 1", "1.5", "From Trigger"}) {
        EXPECT_EQ(TypeParam().parse(text), byte(64)) << text;
    }
}

TYPED_TEST(DataByteFormatter, AnyTextBecomesADataByte) {
    expectAlwaysValid<TypeParam>(isFixedDataByte);
}

TEST(PressureValueFormatter, ReadsAndClampsLikeAVelocity) {
    const PressureValueFormatter formatter;
    for (unsigned value = 0; value <= 255; ++value) {
        EXPECT_EQ(formatter.parse(std::to_string(value)), std::min(value, 127U));
    }
    EXPECT_EQ(formatter.parse(""), 64);
    EXPECT_EQ(formatter.parse("256"), 64);
    EXPECT_EQ(formatter.format(100), "100");
    expectAlwaysValid<PressureValueFormatter>([](std::uint8_t value) { return value <= 127; });
}

TEST(BankFormatter, ClampsToADataByteAndReadsWhatIsUnreadableAsTheFirstBank) {
    const BankFormatter formatter;
    for (unsigned value = 0; value <= 255; ++value) {
        EXPECT_EQ(formatter.parse(std::to_string(value)), std::min(value, 127U));
    }
    for (const auto* text : {"", "x", "-1", "256"}) {
        EXPECT_EQ(formatter.parse(text), 0) << text;
    }
    EXPECT_EQ(formatter.format(7), "7");
    expectAlwaysValid<BankFormatter>([](std::uint8_t value) { return value <= 127; });
}

TEST(PitchValueFormatter, EveryPitchComesBackAndLargerNumbersAreTheTop) {
    const PitchValueFormatter formatter;
    for (unsigned value = 0; value <= 65535; ++value) {
        ASSERT_EQ(formatter.parse(std::to_string(value)), std::min(value, 16383U));
    }
    EXPECT_EQ(formatter.format(16383), "16383");
}

TEST(PitchValueFormatter, WhatIsUnreadableIsTheCentre) {
    const PitchValueFormatter formatter;
    for (const auto* text : {"", "x", "-1", "65536", "99999"}) {
        EXPECT_EQ(formatter.parse(text), 8192) << text;
    }
    EXPECT_EQ(formatter.parse("20000"), 16383);
    expectAlwaysValid<PitchValueFormatter>([](std::uint16_t value) { return value <= 16383; });
}

TEST(DelayValueFormatter, NegativeAndUnreadableDelaysAreNone) {
    const DelayValueFormatter formatter;
    EXPECT_EQ(formatter.parse("-20"), 0);
    EXPECT_EQ(formatter.parse(""), 0);
    EXPECT_EQ(formatter.parse("1.5"), 0);
    EXPECT_EQ(formatter.parse("9223372036854775808"), 0);
    EXPECT_EQ(formatter.parse("1500"), 1500);
    EXPECT_EQ(formatter.parse("+7"), 7);
    EXPECT_EQ(formatter.format(1500), "1500");
}

TEST(DelayValueFormatter, HasNoUpperBound) {
    constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(DelayValueFormatter().parse(std::to_string(greatest)), greatest);
    expectAlwaysValid<DelayValueFormatter>([](std::int64_t value) { return value >= 0; });
}

TEST(TriggerValueFormatter, EveryByteComesBackUnclamped) {
    const TriggerValueFormatter formatter;
    for (unsigned value = 0; value <= 255; ++value) {
        const auto expected = exactly(static_cast<std::uint8_t>(value));
        EXPECT_EQ(formatter.parse(std::to_string(value)), expected);
        EXPECT_EQ(formatter.parse(formatter.format(expected)), expected);
    }
}

TEST(TriggerValueFormatter, AllElseIsAny) {
    const TriggerValueFormatter formatter;
    for (const auto* text : {"Any", "", "x", "256", "-1"}) {
        EXPECT_EQ(formatter.parse(text), any) << text;
    }
    EXPECT_EQ(formatter.format(any), "Any");
    expectAlwaysValid<TriggerValueFormatter>([](const TriggerValueV2&) { return true; });
}

TEST(SystemExclusiveFormatter, ShowsPairsOfUpperCaseDigits) {
    EXPECT_EQ(SystemExclusiveFormatter().format({0xF0, 0x7E, 0x7F, 0xF7}), "F0 7E 7F F7");
    EXPECT_EQ(SystemExclusiveFormatter().format({0x0A}), "0A");
    EXPECT_EQ(SystemExclusiveFormatter().format({}), "");
}

TEST(SystemExclusiveFormatter, ReadsDigitsInPairsAcrossBlanks) {
    const SystemExclusiveFormatter formatter;
    EXPECT_EQ(formatter.parse("f0 7e 7f 09 01 f7"), (Bytes{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}));
    EXPECT_EQ(formatter.format(formatter.parse("f0 7e 7f 09 01 f7")), "F0 7E 7F 09 01 F7");
    EXPECT_EQ(formatter.parse("F0G1"), (Bytes{0xF0, 0x01}));
    EXPECT_EQ(formatter.parse("F"), Bytes{});
    EXPECT_EQ(formatter.parse(""), Bytes{});
    EXPECT_EQ(formatter.parse("   "), Bytes{});
    EXPECT_EQ(formatter.parse("F0 7"), Bytes{0xF0});
    EXPECT_EQ(formatter.parse("F0 7 E"), (Bytes{0xF0, 0x7E}));
    EXPECT_EQ(formatter.parse("  1   2 "), Bytes{0x12});
    EXPECT_EQ(formatter.parse("1\t2"), Bytes{0x10});
}

TEST(SystemExclusiveFormatter, ACharacterOfSeveralBytesIsOneDigit) {
    EXPECT_EQ(SystemExclusiveFormatter().parse("F♯"), Bytes{0xF0});
    EXPECT_EQ(SystemExclusiveFormatter().parse("ä1"), Bytes{0x01});
}

TEST(SystemExclusiveFormatter, EveryByteComesBack) {
    Bytes all;
    for (unsigned value = 0; value <= 255; ++value) {
        all.push_back(static_cast<std::uint8_t>(value));
    }
    EXPECT_EQ(SystemExclusiveFormatter().parse(SystemExclusiveFormatter().format(all)), all);
    expectAlwaysValid<SystemExclusiveFormatter>([](const Bytes&) { return true; });
}

TEST(NameFormatter, IsTheTextItself) {
    EXPECT_EQ(NameFormatter().parse(" Über / all "), " Über / all ");
    EXPECT_EQ(NameFormatter().format("x"), "x");
    expectAlwaysValid<NameFormatter>([](const std::string&) { return true; });
}

}  // namespace
}  // namespace quillo
