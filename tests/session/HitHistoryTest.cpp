// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/HitHistory.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "engine/RuleCompiler.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

using Places = std::vector<std::size_t>;

Rule named(const char* name, std::uint8_t key = 60) {
    return rule(onNoteOn(exactly(key)), send(noteOn(0, 1, 1)), name);
}

const Rule a = named("a", 1);
const Rule b = named("b", 2);
const Rule c = named("c", 3);
const Rule d = named("d", 4);

ListedRules listed(const std::vector<Rule>& rules) {
    ListedRules listed;
    std::ranges::transform(rules, std::back_inserter(listed), [](const Rule& rule) { return &rule; });
    return listed;
}

Places places(const std::vector<Rule>& before, const std::vector<Rule>& after) {
    return placesBefore(listed(before), listed(after));
}

TEST(PlacesBefore, AnEditOfOneRuleLeavesTheOthers) {
    EXPECT_EQ(places({a, b, c}, {a, d, c}), (Places{0, noPlace, 2}));
}

TEST(PlacesBefore, ARuleThatIsAddedTakesNobodysPlace) {
    EXPECT_EQ(places({a, b}, {a, c, b}), (Places{0, noPlace, 1}));
    EXPECT_EQ(places({a, b}, {c, a, b}), (Places{noPlace, 0, 1}));
    EXPECT_EQ(places({}, {a}), Places{noPlace});
}

TEST(PlacesBefore, ARuleThatIsDeletedLeavesTheOthers) {
    EXPECT_EQ(places({a, b, c}, {a, c}), (Places{0, 2}));
    EXPECT_EQ(places({a}, {}), Places{});
}

TEST(PlacesBefore, ACopyOfARuleIsNew) {
    EXPECT_EQ(places({a, b}, {a, a, b}), (Places{0, noPlace, 1}));
}

TEST(PlacesBefore, OfTwoEqualRulesTheOneThatStaysIsTheOneInItsPlace) {
    EXPECT_EQ(places({a, a, b}, {a, b}), (Places{0, 2}));
    EXPECT_EQ(places({a, b, a}, {b, a}), (Places{1, 2}));
}

TEST(PlacesBefore, ARuleThatIsMovedStaysItself) {
    EXPECT_EQ(places({a, b, c, d}, {b, c, d, a}), (Places{1, 2, 3, 0}));
    EXPECT_EQ(places({a, b, c, d}, {d, a, b, c}), (Places{3, 0, 1, 2}));
    EXPECT_EQ(places({a, b, c, d}, {a, c, b, d}), (Places{0, 2, 1, 3}));
}

TEST(PlacesBefore, ARuleThatIsRenamedStaysItself) {
    EXPECT_EQ(places({a, b, c}, {a, named("other", 2), c}), (Places{0, 1, 2}));
    EXPECT_EQ(places({named("x"), named("y")}, {named("y")}), Places{1});
}

TEST(PlacesBefore, TheEqualRuleIsPreferredToOneWithAnotherName) {
    const auto [x, y, z] = std::array{named("x"), named("y"), named("z")};
    EXPECT_EQ(places({y, x, a}, {z, y, b}), (Places{1, 0, noPlace}));
    EXPECT_EQ(places({x, y, a}, {y, b}), (Places{1, noPlace}));
}

TEST(PlacesBefore, OfEqualRulesThoseAtTheEndAreTheOnesThatEndTheListBefore) {
    EXPECT_EQ(places({a, b, c, b, d, named("e", 5)}, {named("f", 6), b, d, named("e", 5)}),
              (Places{noPlace, 3, 4, 5}));
}

/// The first 256 of those that could be it, and the last.
TEST(PlacesBefore, ARuleIsLookedForAmongSoManyOthersOnly) {
    std::vector<Rule> before;
    for (int number = 0; number < 300; ++number) {
        before.push_back(rule(onNoteOn(), send(noteOn(0, 1, 1), number)));
    }
    EXPECT_EQ(places(before, {before[255], a}), (Places{255, noPlace}));
    EXPECT_EQ(places(before, {before[256], a}), (Places{noPlace, noPlace}));
    EXPECT_EQ(places(before, {before[299], a}), (Places{299, noPlace}));
}

/// Moved across ten thousand others, and ten thousand in the place of as many.
TEST(PlacesBefore, ListsOfThousandsAreMatchedToo) {
    std::vector<Rule> before;
    std::vector<Rule> others;
    for (int number = 0; number < 10000; ++number) {
        before.push_back(rule(onNoteOn(), send(noteOn(0, 1, 1), number)));
        others.push_back(rule(onNoteOff(), send(noteOn(0, 1, 1), number)));
    }
    auto moved = before;
    std::ranges::rotate(moved, moved.begin() + 1);
    EXPECT_EQ(places(before, moved).back(), 0U);
    EXPECT_EQ(places(moved, before).front(), 9999U);
    EXPECT_EQ(places(before, others), Places(10000, noPlace));
}

class HitHistoryTest : public testing::Test {
protected:
    /// The rules run, and those at these places have fired at these times.
    CompiledRules firing(const std::vector<Rule>& rules,
                         const std::vector<std::pair<std::size_t, SampleTime>>& fired) {
        auto compiled = compileRules(rules, 1000);
        for (const auto& [place, time] : fired) {
            compiled.counts.count(place, time);
        }
        return compiled;
    }

    HitHistory history;
};

TEST_F(HitHistoryTest, ARuleHasFiredAsOftenAsItWasCountedAndLastAsLongAgo) {
    const auto running = firing({a, b}, {{1, 100}, {1, 400}});
    EXPECT_EQ(history.hits(running, {900, 1000}), (std::vector<RuleHits>{{}, {2, 0.5}}));
}

TEST_F(HitHistoryTest, HitsGoOnFromListToList) {
    const auto first = firing({a, b}, {{0, 100}, {1, 200}});
    const std::vector<Rule> edited{b, c};
    history.follow(first, {}, {edited}, {1000, 1000});
    const auto second = firing(edited, {{1, 1500}});
    EXPECT_EQ(history.hits(second, {2000, 1000}), (std::vector<RuleHits>{{1, 1.8}, {1, 0.5}}));
    history.follow(second, {}, {edited}, {2000, 1000});
    const auto third = firing(edited, {{0, 2900}});
    EXPECT_EQ(history.hits(third, {3000, 1000}), (std::vector<RuleHits>{{2, 0.1}, {1, 1.5}}));
}

TEST_F(HitHistoryTest, HitsWaitForARuleThatIsSwitchedOff) {
    const auto first = firing({a, b, c}, {{0, 100}, {1, 200}, {2, 300}});
    const PluginData withoutB{{a, c}, {{1, b}}};
    history.follow(first, {}, withoutB, {1000, 1000});
    const auto second = firing(withoutB.rules, {{0, 1500}});
    EXPECT_EQ(history.hits(second, {2000, 1000}), (std::vector<RuleHits>{{2, 0.5}, {1, 1.7}}));
    const PluginData withoutC{{a, b}, {{2, c}}};
    history.follow(second, withoutB.shelf, withoutC, {2000, 1000});
    const auto third = firing(withoutC.rules, {{1, 2900}});
    EXPECT_EQ(history.hits(third, {3000, 1000}), (std::vector<RuleHits>{{2, 1.5}, {2, 0.1}}));
    history.follow(third, withoutC.shelf, {{a, b, c}}, {3000, 1000});
    EXPECT_EQ(history.hits(firing({a, b, c}, {}), {4000, 1000}),
              (std::vector<RuleHits>{{2, 2.5}, {2, 1.1}, {1, 3.7}}));
}

TEST_F(HitHistoryTest, ARuleThatIsEditedWhileItIsOffHasNotFired) {
    history.follow(firing({a, b}, {{1, 100}}), {}, {{a}, {{1, b}}}, {200, 1000});
    history.follow(firing({a}, {}), {{1, b}}, {{a}, {{1, d}}}, {300, 1000});
    history.follow(firing({a}, {}), {{1, d}}, {{a, d}}, {400, 1000});
    EXPECT_EQ(history.hits(firing({a, d}, {}), {500, 1000}), std::vector<RuleHits>(2));
}

TEST_F(HitHistoryTest, WhatWasSecondsAgoAtOneRateIsAsLongAgoAtAnother) {
    const auto slow = firing({a}, {{0, 1000}});
    history.follow(slow, {}, {{a}}, {2000, 1000});
    EXPECT_EQ(history.hits(firing({a}, {}), {2000 + 96000, 96000}), (std::vector<RuleHits>{{1, 2.0}}));
}

TEST_F(HitHistoryTest, AListThatIsLoadedHasNotFired) {
    history.follow(firing({a}, {{0, 100}}), {}, {{a}}, {200, 1000});
    history.forget();
    EXPECT_EQ(history.hits(firing({a}, {}), {300, 1000}), std::vector<RuleHits>(1));
}

TEST_F(HitHistoryTest, AHitInTheBlockThatIsBeingRenderedIsNow) {
    EXPECT_EQ(history.hits(firing({a}, {{0, 120}}), {100, 1000}), (std::vector<RuleHits>{{1, 0.0}}));
}

}  // namespace
}  // namespace quillo
