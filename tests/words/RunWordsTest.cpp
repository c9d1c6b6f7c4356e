// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/RunWords.hpp"

#include <gtest/gtest.h>

#include <array>

#include "support/TestRules.hpp"
#include "words/PlainWords.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(RunWords, OfOneRuleAreItsPlainWords) {
    const auto alone = rule(onNoteOn(exactly(60)), send(noteOn(0, 60, 100)), "alone");
    EXPECT_EQ(runInPlainWords({&alone, 1}), inPlainWords(alone));
}

TEST(RunWords, NameTheFirstAndTheLastValueOfTheTriggerAndOfAMessageThatRises) {
    const std::array rising{rule(onNoteOff(exactly(36)), send(noteOn(0, 24, 0)), "down"),
                            rule(onNoteOff(exactly(37)), send(noteOn(0, 25, 0)), "down"),
                            rule(onNoteOff(exactly(38)), send(noteOn(0, 26, 0)), "down")};
    EXPECT_EQ(
        runInPlainWords(rising),
        "\"down\", notes C1 to D1, 3 rules: when note-off 36 (C1) to 38 (D1) arrives on any channel (pass "
        "through), send note-on 24 (C0) to 26 (D0) with velocity 0 on channel 1 at once.");
}

TEST(RunWords, SayWhatKindOfValueItIs) {
    const std::array values{rule(onControlChange(64, exactly(126)), send(noteOn(0, 1, 2)), "half"),
                            rule(onControlChange(64, exactly(127)), send(noteOn(0, 1, 2)), "half")};
    EXPECT_EQ(
        runInPlainWords(values),
        "\"half\", values 126 to 127, 2 rules: when controller 64 (Sustain) with value 126 to 127 arrives on "
        "any channel (pass through), send note-on 1 (C♯-2) with velocity 2 on channel 1 at once.");
    const std::array programs{rule(onProgramChange(exactly(0)), send(controlChange(0, 7, 9)), "p"),
                              rule(onProgramChange(exactly(1)), send(controlChange(0, 7, 10)), "p")};
    EXPECT_EQ(
        runInPlainWords(programs),
        "\"p\", programs 0 to 1, 2 rules: when program 0 to 1 arrives on any channel (pass through), send "
        "controller 7 (Volume) with value 9 to 10 on channel 1 at once.");
}

TEST(RunWords, OfTwoSentencesNameTheFirstAndTheLastOfWhatDiffers) {
    EXPECT_EQ(
        sentenceFromTo("it waits for 36 (C1), this is 60 (C3)", "it waits for 47 (B1), this is 60 (C3)"),
        "it waits for 36 (C1) to 47 (B1), this is 60 (C3)");
    EXPECT_EQ(sentenceFromTo("the same", "the same"), "the same");
    EXPECT_EQ(sentenceFromTo("two words", "these are four words"), "two words");
}

}  // namespace
}  // namespace quillo
