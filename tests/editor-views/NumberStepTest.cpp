// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/NumberStep.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "editor/ValueFormatters.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using test::byte;

TEST(NumberStep, StepsUpAndDown) {
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(64), 1), byte(65));
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(64), -10), byte(54));
    EXPECT_EQ(stepped(PitchValueFormatter{}, std::uint16_t{8192}, 10), std::uint16_t{8202});
    EXPECT_EQ(stepped(DelayValueFormatter{}, std::int64_t{250}, -1), std::int64_t{249});
}

TEST(NumberStep, StaysWithinWhatTheFormatterTakes) {
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(120), 10), byte(127));
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(3), -10), byte(0));
    EXPECT_EQ(stepped(PitchValueFormatter{}, std::uint16_t{16383}, 1), std::uint16_t{16383});
    EXPECT_EQ(stepped(DelayValueFormatter{}, std::int64_t{0}, -1), std::int64_t{0});
}

TEST(NumberStep, OfWhatATriggerWaitsForEndsAtTheGreatestDataByte) {
    const auto exactly = [](std::uint8_t value) { return TriggerValueV2(TriggerValueV2::Value{value}); };
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(126), 1), exactly(127));
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(127), 1), exactly(127));
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(120), 10), exactly(127));
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(0), -1), exactly(0));
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(200), 1), exactly(200)) << "It was typed.";
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(255), 10), exactly(255));
    EXPECT_EQ(stepped(TriggerValueFormatter{}, exactly(200), -1), exactly(199));
}

TEST(NumberStep, NeverJumpsBackOrBecomesSomethingElse) {
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(200), 1), std::nullopt);
    EXPECT_EQ(stepped(VelocityFormatter{}, byte(200), -1), byte(127));
}

TEST(NumberStep, LeavesWhatIsNoNumber) {
    EXPECT_EQ(stepped(TriggerValueFormatter{}, TriggerValueV2(TriggerValueV2::AnyValue{}), 1), std::nullopt);
    EXPECT_EQ(stepped(VelocityFormatter{}, GenericByteV2(GenericByteV2::RespectiveTriggerByte{}), 1),
              std::nullopt);
}

TEST(NumberStep, DoesNotOverflow) {
    constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(stepped(DelayValueFormatter{}, greatest, 10), greatest);
    EXPECT_EQ(stepped(DelayValueFormatter{}, greatest - 5, 10), greatest);
}

TEST(NumberStep, TextIsNotSteppedHoweverItLooks) {
    static_assert(!Steppable<NameFormatter::Value>);
    static_assert(!Steppable<SystemExclusiveFormatter::Value>);
    static_assert(Steppable<PressureValueFormatter::Value>);
}

}  // namespace
}  // namespace quillo
