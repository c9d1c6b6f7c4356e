// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QuotedText.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillo {
namespace {

using namespace std::string_literals;

TEST(QuotedText, StaysOnOneLineAndInItsQuotes) {
    EXPECT_EQ(inQuotes("Split"), "\"Split\"");
    EXPECT_EQ(inQuotes(""), "\"\"");
    EXPECT_EQ(inQuotes("a\"b\\c\nd\te"), "\"a\\\"b\\\\c\\nd\\u0009e\"");
}

TEST(QuotedText, FillsAColumnWholeWhereItFits) {
    EXPECT_EQ(inQuotes("Split", 7), "\"Split\"");
    EXPECT_EQ(inQuotes("Fl♯öte", 8), "\"Fl♯öte\"");
}

TEST(QuotedText, EndsInAnEllipsisWhereTheColumnIsTooNarrow) {
    EXPECT_EQ(inQuotes("Split", 6), "\"Spl…\"");
    EXPECT_EQ(inQuotes("♯♯♯♯♯", 6), "\"♯♯♯…\"");
    EXPECT_EQ(characterCount(inQuotes(std::string(100'000, 'n'), 30)), 30u);
}

TEST(EscapedText, LeavesWhatIsHarmlessAsItIs) {
    for (const std::string text : {"", "song v1.2.mid", "a \"quote\" and a \\", "Flöte ♯ 日本語 🎹",
                                   "\u00a0~\u2027\u202f\u2065\u2070", "\ud7ff\ue000\U00010000\U0010ffff"}) {
        EXPECT_EQ(escaped(text), text);
    }
}

TEST(EscapedText, ShowsEveryControlCharacterOfBothKinds) {
    EXPECT_EQ(escaped("\x1b[2J\x1b]0;title\a"), "\\u001b[2J\\u001b]0;title\\u0007");
    EXPECT_EQ(escaped("a\0b\r\n\t"s), "a\\u0000b\\u000d\\n\\u0009");
    EXPECT_EQ(escaped("\x7f\u0080\u009b\u009f"), "\\u007f\\u0080\\u009b\\u009f");
}

TEST(EscapedText, ShowsWhatTurnsTheDirectionOrBreaksTheLine) {
    EXPECT_EQ(escaped("\u061c\u200e\u200f"), "\\u061c\\u200e\\u200f");
    EXPECT_EQ(escaped("\u2028\u2029\u202a\u202e"), "\\u2028\\u2029\\u202a\\u202e");
    EXPECT_EQ(escaped("\u2066\u2067\u2068\u2069\u206f"), "\\u2066\\u2067\\u2068\\u2069\\u206f");
}

TEST(EscapedText, ShowsEveryByteThatIsNotUTF8) {
    EXPECT_EQ(escaped("a\xff\xfe z"), "a\\xff\\xfe z");
    EXPECT_EQ(escaped("\x9b[2J"), "\\x9b[2J") << "a control character of eight bits";
    EXPECT_EQ(escaped("\xe2\x99"), "\\xe2\\x99") << "cut off";
    EXPECT_EQ(escaped("\xc3("), "\\xc3(");
    EXPECT_EQ(escaped("\xc0\x9b\xc1\xbf"), "\\xc0\\x9b\\xc1\\xbf") << "overlong";
    EXPECT_EQ(escaped("\xe0\x82\x9b\xf0\x80\x82\x9b"), "\\xe0\\x82\\x9b\\xf0\\x80\\x82\\x9b") << "overlong";
    EXPECT_EQ(escaped("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half of a surrogate pair";
    EXPECT_EQ(escaped("\xf4\x90\x80\x80\xf8\x88\x80\x80\x80"),
              "\\xf4\\x90\\x80\\x80\\xf8\\x88\\x80\\x80\\x80")
        << "beyond Unicode";
}

TEST(EscapedText, IsNotEscapedTwice) {
    const auto once = escaped("\x1b\u009b\xff\n");
    EXPECT_EQ(escaped(once), once);
    EXPECT_EQ(escaped(inQuotes("\x1b\"\\")), inQuotes("\x1b\"\\"));
}

TEST(EscapedLines, KeepsTheLinesOfAText) {
    EXPECT_EQ(escapedLines("one\x1b\n\ntwo\r\n"), "one\\u001b\n\ntwo\\u000d\n");
    EXPECT_EQ(escapedLines(""), "");
}

TEST(CharacterCount, CountsWhatIsSeenAndNotBytes) {
    EXPECT_EQ(characterCount(""), 0u);
    EXPECT_EQ(characterCount("C♯3"), 3u);
    EXPECT_EQ(characterCount("𝄞é"), 2u);
}

}  // namespace
}  // namespace quillo
