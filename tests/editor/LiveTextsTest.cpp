// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <limits>

#include "editor/LiveTexts.hpp"

namespace quillo {
namespace {

TEST(HitsText, SaysHowOftenAndWhenLast) {
    EXPECT_EQ(hitsText({0, 5}), "never fired since load");
    EXPECT_EQ(hitsText({37, 0}), "37 × · now");
    EXPECT_EQ(hitsText({1, 0.999}), "1 × · now");
    EXPECT_EQ(hitsText({1204, 2.9}), "1,204 × · 2 s ago");
}

TEST(HitsText, PutsCommasBetweenThousands) {
    EXPECT_EQ(hitsText({999, 0}), "999 × · now");
    EXPECT_EQ(hitsText({1000, 0}), "1,000 × · now");
    EXPECT_EQ(hitsText({12'345'678, 0}), "12,345,678 × · now");
    EXPECT_EQ(hitsText({std::numeric_limits<std::uint64_t>::max(), 0}), "18,446,744,073,709,551,615 × · now");
}

TEST(HitsText, RoundsTimesDownToTheGreatestUnit) {
    EXPECT_EQ(hitsText({1, 1}), "1 × · 1 s ago");
    EXPECT_EQ(hitsText({1, 59.9}), "1 × · 59 s ago");
    EXPECT_EQ(hitsText({1, 60}), "1 × · 1 min ago");
    EXPECT_EQ(hitsText({1, 3599}), "1 × · 59 min ago");
    EXPECT_EQ(hitsText({1, 3600}), "1 × · 1 h ago");
    EXPECT_EQ(hitsText({1, 86'399}), "1 × · 23 h ago");
    EXPECT_EQ(hitsText({1, 86'400}), "1 × · 1 d ago");
}

TEST(WaitingText, TimesToGoTakeAtMostSixCharacters) {
    EXPECT_EQ(timeToGo(0), "0.00 s");
    EXPECT_EQ(timeToGo(0.089), "0.08 s");
    EXPECT_EQ(timeToGo(9.999), "9.99 s");
    EXPECT_EQ(timeToGo(10), "10.0 s");
    EXPECT_EQ(timeToGo(99.99), "99.9 s");
    EXPECT_EQ(timeToGo(100), "100 s");
    EXPECT_EQ(timeToGo(599), "599 s");
    EXPECT_EQ(timeToGo(600), "10 min");
    EXPECT_EQ(timeToGo(5999), "99 min");
    EXPECT_EQ(timeToGo(6000), "1 h");
    EXPECT_EQ(timeToGo(359'999), "99 h");
    EXPECT_EQ(timeToGo(360'000), "4 d");
}

TEST(WaitingText, SaysTheBytesOfAllMessagesAndTheRule) {
    WaitingOutput output{1, 0.21, MessageList(MIDIMessage{0xB0, 0, 0}, MIDIMessage{0xC0, 0x30}), "Pedal"};
    EXPECT_EQ(waitingBytes(output), "b0 00 00, c0 30");
    EXPECT_EQ(waitingText(output), "0.21 s b0 00 00, c0 30 Pedal");
    output.messages = MessageList(MIDIMessage{0x93, 0x4A, 0x50});
    output.ruleName.clear();
    EXPECT_EQ(waitingText(output), "0.21 s 93 4a 50");
    output.ruleName = "a\nb";
    EXPECT_EQ(waitingText(output), "0.21 s 93 4a 50 a\\nb");
}

}  // namespace
}  // namespace quillo
