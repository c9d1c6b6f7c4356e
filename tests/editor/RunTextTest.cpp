// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunText.hpp"

#include <gtest/gtest.h>

#include "rules/MIDIVocabulary.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Range = std::optional<std::pair<std::uint8_t, std::uint8_t>>;

constexpr auto notes = TriggerEntryType::NoteOn;
constexpr auto values = TriggerEntryType::ControlChange;

TEST(RunText, ShowsNotesByNameAndOtherValuesByNumber) {
    RuleEntry entry;
    entry.trigger = {.type = TriggerEntryType::NoteOff, .note = exactly(36)};
    EXPECT_EQ(rangeText(entry, 12), "C1 – B1");
    entry.trigger = {.type = TriggerEntryType::ControlChange, .controllerValue = exactly(64)};
    EXPECT_EQ(rangeText(entry, 64), "64 – 127");
    entry.trigger = {.type = TriggerEntryType::ProgramChange, .program = exactly(0)};
    EXPECT_EQ(rangeText(entry, 64), "0 – 63");
}

TEST(RunText, ShowsATranspositionWithItsSign) {
    EXPECT_EQ(offsetText(12), "From Trigger + 12");
    EXPECT_EQ(offsetText(-5), "From Trigger − 5");
    EXPECT_EQ(offsetText(0), "From Trigger + 0");
}

TEST(RunText, ReadsWhatItShows) {
    for (int from = 0; from < 128; ++from) {
        for (int to = from + 1; to < 128; ++to) {
            const Range range(std::in_place, from, to);
            RuleEntry entry;
            const auto count = std::size_t{1} + static_cast<std::size_t>(to - from);
            entry.trigger = {.type = notes, .note = exactly(static_cast<std::uint8_t>(from))};
            ASSERT_EQ(typedRange(notes, rangeText(entry, count)), range) << from << " to " << to;
            entry.trigger = {.type = values, .controllerValue = exactly(static_cast<std::uint8_t>(from))};
            ASSERT_EQ(typedRange(values, rangeText(entry, count)), range) << from << " to " << to;
        }
    }
}

TEST(RunText, ReadsRangesAsTheyAreTyped) {
    EXPECT_EQ(typedRange(notes, "c1-b1"), Range({36, 47}));
    EXPECT_EQ(typedRange(notes, "B1 - C1"), Range({36, 47}));
    EXPECT_EQ(typedRange(notes, "c#1-38"), Range({37, 38}));
    EXPECT_EQ(typedRange(notes, "c-2-b-2"), Range({0, 11}));
    EXPECT_EQ(typedRange(values, "64-127"), Range({64, 127}));
    EXPECT_EQ(typedRange(values, "127-64"), Range({64, 127}));
    for (const auto* text :
         {"", "-", "64", "64-", "-64", "64-128", "c1-b1", "6 4 x", "1-2-3", "99999999999-1"}) {
        EXPECT_EQ(typedRange(values, text), Range()) << text;
    }
    for (const auto* text : {"c1", "c-2", "h1-b1", "c1-b9"}) {
        EXPECT_EQ(typedRange(notes, text), Range()) << text;
    }
}

TEST(RunText, ReadsASingleValue) {
    EXPECT_EQ(typedValue(notes, "C♯1"), 37);
    EXPECT_EQ(typedValue(notes, " 37 "), 37);
    EXPECT_EQ(typedValue(values, "127"), 127);
    for (const auto* text : {"", "128", "c1", "-1", "+1"}) {
        EXPECT_EQ(typedValue(values, text), std::nullopt) << text;
    }
}

TEST(RunText, ReadsATransposition) {
    EXPECT_EQ(typedOffset("+12"), 12);
    EXPECT_EQ(typedOffset("- 5"), -5);
    EXPECT_EQ(typedOffset("−127"), -127);
    for (const auto* text : {"", "+", "12", "+128", "+c1", "++1"}) {
        EXPECT_EQ(typedOffset(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace quillo
