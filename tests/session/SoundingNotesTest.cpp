// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/SoundingNotes.hpp"

#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;

SoundingNotes after(const std::vector<Bytes>& messages) {
    SoundingNotes notes;
    for (const auto& message : messages) {
        notes.sent(message);
    }
    return notes;
}

TEST(SoundingNotes, EveryKeyOfEveryChannelSoundsFromItsNoteOnToItsNoteOff) {
    SoundingNotes notes;
    std::size_t count = 0;
    for (unsigned channel = 0; channel < 16; ++channel) {
        for (unsigned key = 0; key < 128; ++key) {
            notes.sent(Bytes{static_cast<std::uint8_t>(0x90 + channel), static_cast<std::uint8_t>(key), 1});
            ASSERT_EQ(notes.countOfNotes(), ++count);
        }
    }
    for (unsigned channel = 0; channel < 16; ++channel) {
        for (unsigned key = 0; key < 128; ++key) {
            const bool byNoteOn = key % 2 == 0;
            notes.sent(Bytes{static_cast<std::uint8_t>((byNoteOn ? 0x90 : 0x80) + channel),
                             static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(byNoteOn ? 0 : 64)});
            ASSERT_EQ(notes.countOfNotes(), --count);
        }
    }
}

TEST(SoundingNotes, AKeyThatIsStruckTwiceSoundsOnce) {
    EXPECT_EQ(after({{0x90, 60, 1}, {0x90, 60, 2}}).countOfNotes(), 1U);
    EXPECT_EQ(after({{0x90, 60, 1}, {0x90, 60, 2}, {0x80, 60, 0}}).countOfNotes(), 0U);
}

TEST(SoundingNotes, NothingButItsNoteOffEndsANote) {
    EXPECT_EQ(after({{0x92, 60, 1},
                     {0x82, 61, 0},
                     {0x83, 60, 0},
                     {0xB2, 123, 0},
                     {0xB2, 120, 0},
                     {0xA2, 60, 0},
                     {0xC2, 60},
                     {0xF0, 0x82, 60, 0, 0xF7}})
                  .countOfNotes(),
              1U);
}

TEST(SoundingNotes, APedalIsDownFrom64OnAndUpBelow) {
    for (const auto pedal : SoundingNotes::pedals) {
        EXPECT_EQ(after({{0xB1, pedal, 63}}).countOfPedals(), 0U);
        EXPECT_EQ(after({{0xB1, pedal, 64}}).countOfPedals(), 1U);
        EXPECT_EQ(after({{0xB1, pedal, 64}, {0xB2, pedal, 127}}).countOfPedals(), 2U);
        EXPECT_EQ(after({{0xB1, pedal, 127}, {0xB1, pedal, 63}}).countOfPedals(), 0U);
    }
    EXPECT_EQ(after({{0xB1, 65, 127}, {0xB1, 68, 127}}).countOfPedals(), 0U);
}

TEST(SoundingNotes, AChannelIsUsedOnceAnyMessageHasGoneOutOnIt) {
    EXPECT_EQ(after({{0xC3, 1}, {0xE0, 0, 64}, {0x8F, 1, 0}, {0xF8}, {0xF0, 1, 0xF7}}).channelsUsed(),
              0b1000'0000'0000'1001);
}

TEST(SoundingNotes, WhatIsNoNoteAndNoWholeMessageIsNotCounted) {
    const auto notes = after({{}, {0x90}, {0x90, 60}, {0x90, 128, 1}, {0x90, 255, 1}, {60, 60, 60}});
    EXPECT_EQ(notes.countOfNotes(), 0U);
    EXPECT_EQ(notes.countOfPedals(), 0U);
}

}  // namespace
}  // namespace quillo
