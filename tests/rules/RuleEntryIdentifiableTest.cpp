// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleEntryIdentifiable.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/EveryEntry.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Output = RuleOutputVariantsV2;

/// A program change without a bank, as documents of the first generation have it.
Rule oldProgramChange(const std::string& name = "old") {
    return rule(onNoteOn(), send(protocol(StatusV2::programChange, channel(3), byte(9)), 20), name);
}

TEST(RuleEntryIdentifiable, OfAnyRuleOfTheEditorsOwnKeepsNothingButTheEntry) {
    for (const auto& entry : everyEntry()) {
        const auto element = elementFromRule(ruleFromEntry(entry));
        ASSERT_EQ(element.loadedMessage, std::nullopt);
        ASSERT_EQ(ruleFromElement(element), ruleFromEntry(entry));
    }
}

TEST(RuleEntryIdentifiable, StandsForExactlyTheRuleThatWasLoaded) {
    for (const Output& message :
         {protocol(StatusV2::programChange, channel(3), byte(9)),
          protocol(StatusV2::programChange, triggerChannel, triggerByte, byte(1)),
          protocol(StatusV2::channelPressure, channel(0), byte(9), byte(1)),
          protocol(StatusV2::pitchWheel, channel(0), byte(200), byte(255)),
          Output(Output::Protocol{StatusByteV2::JustStatus{StatusV2::CC}, byte(7), byte(8)})}) {
        const auto loaded = rule(onNoteOn(), send(message, 20), "old");
        EXPECT_EQ(ruleFromElement(elementFromRule(loaded)), loaded);
    }
}

TEST(RuleEntryIdentifiable, KeepsALoadedMessageWhileOnlyWhatLiesAroundItIsEdited) {
    auto element = elementFromRule(oldProgramChange());
    auto entry = element.rule;
    entry.name = "new";
    entry.trigger.type = TriggerEntryType::MIDIStop;
    entry.output.delay.ms = 7;
    editElement(element, entry);
    EXPECT_EQ(ruleFromElement(element),
              rule(onMIDIStop(), send(protocol(StatusV2::programChange, channel(3), byte(9)), 7), "new"));
}

TEST(RuleEntryIdentifiable, AnEditedMessageIsTheEntrysFromThenOn) {
    auto element = elementFromRule(oldProgramChange());
    auto entry = element.rule;
    entry.output.bank = 1;
    editElement(element, entry);
    entry.output.bank = 0;
    editElement(element, entry);
    EXPECT_EQ(ruleFromElement(element).output.message, programChange(channel(3), 0, byte(9)))
        << "A bank 0 that was typed is sent.";
}

TEST(WhyNotInEditor, NamesTheFirstRuleThatTheEditorCannotHoldByItsPlaceInTheWholeList) {
    const auto plain = rule(onLoad(), send(noteOn(0, 60, 64)), "plain");
    const auto odd =
        rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd");
    const auto brief = rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(0), byte(1))), "brief");
    EXPECT_EQ(whyNotInEditor({}, {}), std::nullopt);
    EXPECT_EQ(whyNotInEditor({plain, oldProgramChange()}, {{1, plain}}), std::nullopt);
    EXPECT_EQ(whyNotInEditor({plain, odd, brief}, {{1, plain}}),
              "Rule 3 \"odd\" cannot be edited: its pressure is copied from the trigger");
    EXPECT_EQ(whyNotInEditor({plain, odd}, {{1, brief}}),
              "Rule 2 \"brief\" cannot be edited: its note has no velocity");
}

TEST(NoticeBeforeEditing, NamesEachRuleWhoseMessageTheEditorCannotHold) {
    EXPECT_EQ(noticeBeforeEditing(elementsFrom({rule(onLoad(), send(noteOn(0, 60, 64)), "plain")})),
              std::nullopt);
    EXPECT_EQ(
        noticeBeforeEditing(
            elementsFrom({oldProgramChange("a"), rule(onLoad(), send(noteOn(0, 60, 64)), "plain"),
                          oldProgramChange("b")})),
        "Rule 1 \"a\" runs as it was loaded. Editing its message changes more than you see: its program "
        "change has no bank, and gets bank 0.\n"
        "Rule 3 \"b\" runs as it was loaded. Editing its message changes more than you see: its program "
        "change has no bank, and gets bank 0.");
}

TEST(NoticeBeforeEditing, CountsTheRulesThatAreSwitchedOff) {
    const auto notice =
        noticeBeforeEditing(elementsFrom({oldProgramChange("b")}, {{0, oldProgramChange("a")}}));
    ASSERT_TRUE(notice.has_value());
    EXPECT_NE(notice->find("Rule 1 \"a\""), std::string::npos) << *notice;
    EXPECT_NE(notice->find("Rule 2 \"b\""), std::string::npos) << *notice;
}

TEST(ElementsFrom, PutsRulesThatAreSwitchedOffIntoTheirPlaces) {
    const auto named = [](std::string name) {
        return rule(onLoad(), send(noteOn(0, 60, 64)), std::move(name));
    };
    const RuleShelf shelf{{0, named("a")}, {1, named("c")}, {1, named("d")}, {2, named("f")}};
    std::string names;
    for (const auto& element : elementsFrom({named("b"), named("e")}, shelf)) {
        names += element.rule.name + (element.off ? "-" : "+");
    }
    EXPECT_EQ(names, "a-b+c-d-e+f-");
    EXPECT_TRUE(elementsFrom({}, {{0, named("a")}}).front().off);
}

TEST(NoticeBeforeEditing, CutsAndEscapesNames) {
    const auto notice =
        noticeBeforeEditing(elementsFrom({oldProgramChange("a\n\"" + std::string(100, 'x'))}));
    ASSERT_TRUE(notice.has_value());
    EXPECT_TRUE(notice->starts_with("Rule 1 \"a\\n\\\"" + std::string(32, 'x') + "…\" runs")) << *notice;
}

TEST(NoticeBeforeEditing, NamesFiveRulesAndCountsTheOthers) {
    const auto notice = noticeBeforeEditing(elementsFrom(std::vector(8, oldProgramChange())));
    ASSERT_TRUE(notice.has_value());
    EXPECT_EQ(std::count(notice->begin(), notice->end(), '\n'), 5);
    EXPECT_TRUE(notice->ends_with("\nThe same holds for 3 more.")) << *notice;
}

}  // namespace
}  // namespace quillo
