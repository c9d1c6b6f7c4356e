// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Comparison.hpp"

#include <gmock/gmock.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

const AskedEvent note = MIDIMessage{0x90, 0x3C, 0x64};
const AskedEvent pedal = MIDIMessage{0xB0, 0x40, 0x7F};

Rule echo(std::int64_t milliseconds, const std::string& name = "echo") {
    return rule(onNoteOn(), send(noteOn(1, 0x3C, 0x64), milliseconds), name);
}

Rule strings(std::string name = "strings") {
    return rule(onControlChange(0x40), send(programChange(channel(0), 0, byte(48))), std::move(name));
}

Comparison compared(const std::vector<Rule>& first, const std::vector<Rule>& second,
                    const std::vector<AskedEvent>& events) {
    EngineProbe before(first);
    EngineProbe after(second);
    return compare(before, after, events);
}

TEST(Comparison, FindsTheEventsAfterWhichSomethingElseLeaves) {
    const auto found = compared({echo(300), strings()}, {echo(200), strings()}, {pedal, note, pedal, note});
    ASSERT_EQ(found.differences.size(), 2U);
    EXPECT_EQ(found.differences[0].event, 1U);
    EXPECT_EQ(found.differences[1].event, 3U);
    const MIDIMessage forwarded{0x90, 0x3C, 0x64};
    const MIDIMessage sent{0x91, 0x3C, 0x64};
    EXPECT_THAT(found.differences[0].first,
                ElementsAre(Departure{0, forwarded, std::nullopt}, Departure{300, sent, 0}));
    EXPECT_THAT(found.differences[0].second,
                ElementsAre(Departure{0, forwarded, std::nullopt}, Departure{200, sent, 0}));
}

TEST(Comparison, TakesNoteOfTheOrderAtOneTime) {
    EXPECT_EQ(compared({echo(0), rule(onNoteOn(), send(noteOn(2, 1, 1)))},
                       {rule(onNoteOn(), send(noteOn(2, 1, 1))), echo(0)}, {note})
                  .differences.size(),
              1U);
}

TEST(Comparison, DoesNotCareWhichRuleSendsWhatLeaves) {
    EXPECT_THAT(compared({echo(10), echo(20)}, {echo(20, "moved up"), echo(10)}, {note}).differences,
                IsEmpty());
}

TEST(Comparison, SeesThatAnEventIsNoLongerForwarded) {
    const auto gate =
        rule(onControlChange(7, any, any, PassThroughV2::EatNonMatching), send(noteOn(0, 1, 1)));
    const auto found = compared({}, {gate}, {note});
    ASSERT_EQ(found.differences.size(), 1U);
    EXPECT_THAT(found.differences[0].second, IsEmpty());
}

TEST(Comparison, CountsHowOftenEachRuleFires) {
    const auto found = compared({echo(300)}, {strings(), echo(300)}, {note, pedal, note, PluginLoad{}});
    EXPECT_THAT(found.firstHits, ElementsAre(2U));
    EXPECT_THAT(found.secondHits, ElementsAre(1U, 2U));
}

TEST(RulePairs, AreEqualRulesFirstAndThenThoseOfTheSameName) {
    EXPECT_THAT(
        paired({echo(1), strings(), echo(2)}, {echo(2), echo(3), strings("new")}),
        ElementsAre(RulePair{2, 0}, RulePair{0, 1}, RulePair{std::nullopt, 2}, RulePair{1, std::nullopt}));
}

TEST(RulePairs, KeepTheOrderOfEqualRules) {
    EXPECT_THAT(paired({echo(1), echo(1)}, {echo(1), strings(), echo(1)}),
                ElementsAre(RulePair{0, 0}, RulePair{std::nullopt, 1}, RulePair{1, 2}));
}

}  // namespace
}  // namespace quillo
