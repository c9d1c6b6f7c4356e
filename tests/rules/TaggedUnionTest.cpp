// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TaggedUnion.hpp"

#include <gtest/gtest.h>

#include <type_traits>

#include "rules/Rule.hpp"

namespace quillo {
namespace {

TEST(TaggedUnion, HandsOutThePayloadOfItsCaseOnly) {
    const TriggerValueV2 value = TriggerValueV2::Value{60};
    ASSERT_NE(value.getIf<TriggerValueV2::Value>(), nullptr);
    EXPECT_EQ(value.getIf<TriggerValueV2::Value>()->value, 60);
    EXPECT_EQ(value.getIf<TriggerValueV2::AnyValue>(), nullptr);
    EXPECT_TRUE(value.is<TriggerValueV2::Value>());
    EXPECT_FALSE(value.is<TriggerValueV2::AnyValue>());
}

TEST(TaggedUnion, IsEqualWhenCaseAndPayloadAre) {
    using Channel = RuleOutputChannelV2;
    EXPECT_EQ(Channel(Channel::Value{3}), Channel(Channel::Value{3}));
    EXPECT_NE(Channel(Channel::Value{3}), Channel(Channel::Value{4}));
    EXPECT_NE(Channel(Channel::Value{0}), Channel(Channel::TriggerChannel{}));
}

TEST(TaggedUnion, TakesNoCaseOfAnotherUnion) {
    static_assert(std::is_constructible_v<GenericByteV2, GenericByteV2::Value>);
    static_assert(!std::is_constructible_v<GenericByteV2, TriggerValueV2::Value>);
    static_assert(!std::is_constructible_v<RuleOutputChannelV2, GenericByteV2::Value>);
    static_assert(!std::is_default_constructible_v<RuleTriggerV2>);
}

}  // namespace
}  // namespace quillo
