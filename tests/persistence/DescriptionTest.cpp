// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/Description.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <variant>

#include "persistence/RuleDescriptions.hpp"
#include "persistence/RuleV1Descriptions.hpp"

namespace quillo {
namespace {

enum class Colour : std::uint8_t { red, green, blue };

struct Point {
    int x;
    std::string label;
};

struct PointWithOptional {
    int x;
    std::optional<TriggerValueV2> last;
};

struct Empty {};

using FieldsOfX = std::tuple<Field<Point, int>>;
using FieldsOfPoint = std::tuple<Field<Point, int>, Field<Point, std::string>>;
using FieldsOfOptionalX = std::tuple<Field<PointWithOptional, int>>;
using AllOptionalFields =
    std::tuple<Field<PointWithOptional, int>, Field<PointWithOptional, std::optional<TriggerValueV2>>>;

TEST(Description, IsWholeOnlyWithEveryMemberOfAStructure) {
    EXPECT_TRUE((coversMembers<Point, FieldsOfPoint>));
    EXPECT_FALSE((coversMembers<Point, FieldsOfX>));
    EXPECT_FALSE((coversMembers<Point, std::tuple<>>));
    EXPECT_TRUE((coversMembers<Empty, std::tuple<>>));
    EXPECT_TRUE((coversMembers<PointWithOptional, AllOptionalFields>));
    EXPECT_FALSE((coversMembers<PointWithOptional, FieldsOfOptionalX>));
}

TEST(Description, IsWholeOnlyWithEveryCaseInOrder) {
    using Value = UnionCase<TriggerValueV2::Value, std::uint8_t>;
    using ValueWithoutPayload = UnionCase<TriggerValueV2::Value>;
    using AnyValue = UnionCase<TriggerValueV2::AnyValue>;
    using Variant = TriggerValueV2::Variant;
    EXPECT_TRUE((coversAlternatives<Variant, std::tuple<Value, AnyValue>>));
    EXPECT_FALSE((coversAlternatives<Variant, std::tuple<AnyValue, Value>>));
    EXPECT_FALSE((coversAlternatives<Variant, std::tuple<Value>>));
    EXPECT_FALSE((coversAlternatives<Variant, std::tuple<ValueWithoutPayload, AnyValue>>));
}

TEST(Description, IsWholeOnlyWithEveryEnumerator) {
    EXPECT_TRUE((hasEnumerators<Colour, 3>()));
    EXPECT_FALSE((hasEnumerators<Colour, 2>()));
    EXPECT_FALSE((hasEnumerators<Colour, 4>()));
}

TEST(Description, NamesTheTwoPassThroughKeysAsTheyAreStored) {
    EXPECT_EQ(std::get<1>(Description<MessageBasedTriggerV2>::fields).key, "passTrough");
    EXPECT_EQ(std::get<1>(Description<MessageBasedTriggerV1>::fields).key, "passTrough");
    EXPECT_EQ(std::get<1>(Description<HostTransportTriggerV2>::fields).key, "passThrough");
}

}  // namespace
}  // namespace quillo
