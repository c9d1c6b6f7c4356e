// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleSearch.hpp"

#include <gtest/gtest.h>

#include "editor/JuceText.hpp"

namespace quillo {
namespace {

using Positions = std::optional<std::set<std::size_t>>;

/// A card: its name, a note-on trigger, and a controller that is sent.
const std::vector<SearchedText> card{
    {"", "Bass split", ""},
    {"Type", "Note On", "Note On"},
    {"Ch", "2", "channel 2"},
    {"Note", juceText("61 (C\u266f3)"), juceText("61 (C\u266f3)")},
    {"Incoming", "Consume matching", "Consume matching"},
    {"Type", "CC", "CC"},
    {"Ch", "From Trigger", ""},
    {"Controller", "64 : Sustain", "64 : Sustain"},
    {"Value", "127", "127"},
    {"Delay (ms)", "300", "+ 300 ms"},
};

Positions found(const char* typed) {
    return RuleSearch(typed).find(card);
}

TEST(RuleSearch, FindsWordsWhateverTheirCase) {
    EXPECT_EQ(found("bass"), (Positions{{0}}));
    EXPECT_EQ(found("NOTE ON"), (Positions{{1}}));
    EXPECT_EQ(found("usta"), (Positions{{7}}));
    EXPECT_EQ(found("consume"), (Positions{{4}}));
    EXPECT_EQ(found("from trigger"), (Positions{{6}}));
    EXPECT_EQ(found("pedal"), Positions());
}

TEST(RuleSearch, FindsANumberAsAWhole) {
    EXPECT_EQ(found("127"), (Positions{{8}}));
    EXPECT_EQ(found("2"), (Positions{{2}})) << "It is not in 127.";
    EXPECT_EQ(found("12"), Positions());
    EXPECT_EQ(found("27"), Positions());
    EXPECT_EQ(found("30"), Positions());
    EXPECT_EQ(found("300"), (Positions{{9}}));
}

TEST(RuleSearch, FindsNotesByNameAndSharpsByTheKeyThatKeyboardsHave) {
    EXPECT_EQ(found("c#3"), (Positions{{3}}));
    EXPECT_EQ(RuleSearch(juceText("C\u266f3")).find(card), (Positions{{3}}));
    EXPECT_EQ(found("c3"), Positions());
}

TEST(RuleSearch, FindsAValueUnderItsCaptionAndAsALineSaysIt) {
    EXPECT_EQ(found("channel 2"), (Positions{{2}}));
    EXPECT_EQ(found("ch 2"), (Positions{{2}}));
    EXPECT_EQ(found("note 61"), (Positions{{3}}));
    EXPECT_EQ(found("+ 300 ms"), (Positions{{9}}));
    EXPECT_EQ(found("note 6"), Positions());
}

TEST(RuleSearch, FindsNoCaptionByItself) {
    EXPECT_EQ(found("controller"), Positions());
    EXPECT_EQ(found("note"), (Positions{{1}})) << "The type, not the caption.";
}

TEST(RuleSearch, FindsSeveralWordsThatAllStandOnTheCard) {
    EXPECT_EQ(found("cc 127"), (Positions{{5, 8}}));
    EXPECT_EQ(found("split, sustain"), (Positions{{0, 7}}));
    EXPECT_EQ(found("cc 126"), Positions()) << "One of them does not.";
}

TEST(RuleSearch, ANumberBehindAWordIsThatOfTheWord) {
    const std::vector<SearchedText> other{
        {"", "Message #2", ""}, {"Ch", "1", "channel 1"}, {"Ch", "Any", "any channel"}};
    EXPECT_EQ(RuleSearch("channel 2").find({other[0], other[1]}), Positions());
    EXPECT_EQ(RuleSearch("2 channel").find({other[0], other[1]}), (Positions{{0, 1}}));
    EXPECT_EQ(RuleSearch("message 2").find(other), (Positions{{0}}));
    EXPECT_EQ(RuleSearch("channel 2").find(other), (Positions{{0, 2}}));
}

TEST(RuleSearch, BlanksAroundWhatIsTypedDoNotMatter) {
    EXPECT_EQ(found("  bass "), (Positions{{0}}));
    EXPECT_TRUE(RuleSearch("  ").isEmpty());
    EXPECT_FALSE(RuleSearch("b").isEmpty());
}

}  // namespace
}  // namespace quillo
