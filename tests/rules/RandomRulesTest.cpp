// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RandomRules.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace quillo {
namespace {

TEST(RandomRules, AreTheSameWithEveryCompiler) {
    test::RandomRules rules(7);
    std::vector<std::size_t> sizes;
    for (int count = 0; count < 8; ++count) {
        sizes.push_back(rules.list().size());
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{3, 2, 11, 9, 10, 7, 8, 0}));
}

}  // namespace
}  // namespace quillo
