// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUParameterTree.hpp"

#include <gtest/gtest.h>

#include <vector>

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

TEST(AUParameterTree, NotifiesTheObserversOfTheAddressThatChanged) {
    const auto tree = AUParameterTree::createTree({{7}, {3}});
    std::vector<AUParameterAddress> first;
    std::vector<AUParameterAddress> second;
    const auto kept =
        tree->tokenByAddingParameterObserver([&](AUParameterAddress at) { first.push_back(at); });
    auto dropped = tree->tokenByAddingParameterObserver([&](AUParameterAddress at) { second.push_back(at); });
    tree->parameterChanged(3);
    dropped.reset();
    tree->parameterChanged(7);
    EXPECT_EQ(first, (std::vector<AUParameterAddress>{3, 7}));
    EXPECT_EQ(second, std::vector<AUParameterAddress>{3});
}

}  // namespace
}  // namespace quillo
