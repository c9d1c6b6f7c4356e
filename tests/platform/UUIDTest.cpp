// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/UUID.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>

namespace quillo {
namespace {

TEST(UUID, EachOneDiffersFromTheOthers) {
    std::set<UUID> made;
    for (int count = 0; count < 10000; ++count) {
        made.insert(UUID());
    }
    EXPECT_EQ(made.size(), 10000U);
}

TEST(UUID, ACopyIsTheSame) {
    const UUID original;
    const auto copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(copy.text(), original.text());
}

TEST(UUID, ItsTextHasFiveGroupsOfDigitsAndNamesVersionAndVariant) {
    const auto text = UUID().text();
    ASSERT_EQ(text.size(), 36U);
    for (std::size_t position = 0; position < text.size(); ++position) {
        const bool dash = position == 8 || position == 13 || position == 18 || position == 23;
        const bool digit =
            std::isdigit(text[position]) != 0 || (text[position] >= 'A' && text[position] <= 'F');
        EXPECT_TRUE(dash ? text[position] == '-' : digit) << text;
    }
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos);
}

}  // namespace
}  // namespace quillo
