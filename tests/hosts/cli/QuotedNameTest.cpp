// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/QuotedName.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(QuotedName, StaysOnOneLineAndInItsQuotes) {
    EXPECT_EQ(quotedName("Split"), "\"Split\"");
    EXPECT_EQ(quotedName(""), "\"\"");
    EXPECT_EQ(quotedName("a\"b\\c\nd\te"), "\"a\\\"b\\\\c\\nd\\u0009e\"");
}

TEST(QuotedName, FillsAColumnWholeWhereItFits) {
    EXPECT_EQ(quotedName("Split", 7), "\"Split\"");
    EXPECT_EQ(quotedName("Fl♯öte", 8), "\"Fl♯öte\"");
}

TEST(QuotedName, EndsInAnEllipsisWhereTheColumnIsTooNarrow) {
    EXPECT_EQ(quotedName("Split", 6), "\"Spl…\"");
    EXPECT_EQ(quotedName("♯♯♯♯♯", 6), "\"♯♯♯…\"");
    EXPECT_EQ(characterCount(quotedName(std::string(100'000, 'n'), 30)), 30u);
}

TEST(CharacterCount, CountsWhatIsSeenAndNotBytes) {
    EXPECT_EQ(characterCount(""), 0u);
    EXPECT_EQ(characterCount("C♯3"), 3u);
    EXPECT_EQ(characterCount("𝄞é"), 2u);
}

}  // namespace
}  // namespace quillo
