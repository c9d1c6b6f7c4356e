// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/UUID.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/FatalError.hpp"

namespace {

/// What the system's generator of random numbers was asked for, and whether it answers.
int requests = 0;
std::size_t requestedBytes = 0;
bool answers = true;

}  // namespace

/// In the place of the C library's.
extern "C" int getentropy(void* buffer, std::size_t size) {
    static std::mt19937_64 generator(std::random_device{}());
    ++requests;
    requestedBytes += size;
    std::ranges::generate(std::span(static_cast<std::uint8_t*>(buffer), size),
                          [] { return static_cast<std::uint8_t>(generator()); });
    return answers ? 0 : -1;
}

namespace quillo {
namespace {

TEST(UUID, AThousandAskTheSystemOnceEachForTheirBytesAndNothingElse) {
    requests = 0;
    requestedBytes = 0;
    const std::vector<UUID> made(1000);
    EXPECT_EQ(requests, 1000);
    EXPECT_EQ(requestedBytes, 16'000U);
}

TEST(UUID, IsNotMadeWhereTheSystemGivesNoRandomNumbers) {
    answers = false;
    EXPECT_THROW(UUID(), FatalError);
    answers = true;
}

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
