// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AUParameterTree.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(AUParameterTree, MayBeEmpty) {
    EXPECT_TRUE(AUParameterTree::createTree({})->allParameters().empty());
}

TEST(AUParameterTree, KeepsItsParametersInOrder) {
    const auto tree = AUParameterTree::createTree({{7}, {3}});
    ASSERT_EQ(tree->allParameters().size(), 2U);
    EXPECT_EQ(tree->allParameters()[0].address, 7U);
    EXPECT_EQ(tree->allParameters()[1].address, 3U);
}

}  // namespace
}  // namespace quillo
