// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/QuilloModel.hpp"

#include <gtest/gtest.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

EventLogEntry clockAt(SampleTime time) {
    return {time, EventLogEntryVariants::MIDI{{0xF8}}};
}

TEST(QuilloModel, StartsEmptyWithLogsOf100Entries) {
    const QuilloModel model;
    EXPECT_TRUE(model.rules().empty());
    EXPECT_EQ(model.inLog().size(), 0U);
    EXPECT_EQ(model.outLog().size(), 0U);
    EXPECT_EQ(model.inLog().capacity(), 100U);
    EXPECT_EQ(model.outLog().capacity(), 100U);
}

TEST(QuilloModel, ItsLogsAreSeparate) {
    QuilloModel model;
    model.appendToInLog({clockAt(1)});
    model.appendToOutLog({clockAt(2), clockAt(3)});
    EXPECT_EQ(model.inLog().size(), 1U);
    EXPECT_EQ(model.inLog()[0], clockAt(1));
    EXPECT_EQ(model.outLog().size(), 2U);
    EXPECT_EQ(model.outLog()[1], clockAt(3));
}

TEST(QuilloModel, CountsWhatTheInLogWasEverGiven) {
    QuilloModel model;
    EXPECT_EQ(model.inLogCount(), 0U);
    model.appendToInLog(std::vector(101, clockAt(1)));
    model.clearInLog();
    model.appendToInLog({clockAt(2)});
    model.appendToOutLog({clockAt(3)});
    EXPECT_EQ(model.inLogCount(), 102U);
}

TEST(QuilloModel, NotifiesTheObserversOfAPartOnceAChange) {
    QuilloModel model;
    int rules = 0;
    int in = 0;
    int out = 0;
    const auto rulesObservation = model.observeRules([&rules] { ++rules; });
    const auto inObservation = model.observeInLog([&in] { ++in; });
    const auto outObservation = model.observeOutLog([&out] { ++out; });
    model.setRules(std::vector<RuleEntryIdentifiable>(3));
    model.appendToInLog({clockAt(1), clockAt(2)});
    model.appendToInLog({});
    model.clearInLog();
    model.clearOutLog();
    EXPECT_EQ(rules, 1);
    EXPECT_EQ(in, 2);
    EXPECT_EQ(out, 1);
}

TEST(QuilloModel, ThoseWhoObserveAPartSeeItAsItIsNow) {
    QuilloModel model;
    std::vector<std::size_t> sizes;
    const auto rules = model.observeRules([&] { sizes.push_back(model.rules().size()); });
    const auto in = model.observeInLog([&] { sizes.push_back(model.inLog().size()); });
    const auto out = model.observeOutLog([&] { sizes.push_back(model.outLog().size()); });
    model.setRules(std::vector<RuleEntryIdentifiable>(3));
    model.appendToInLog({clockAt(1), clockAt(2)});
    model.appendToOutLog({clockAt(3)});
    model.clearInLog();
    model.clearOutLog();
    model.setNotEditable("odd", std::nullopt);
    EXPECT_EQ(sizes, (std::vector<std::size_t>{3, 2, 1, 0, 0, 0}));
}

const Rule shown = rule(onNoteOn(), send(noteOn(1, 2, 3)), "shown");
const Rule odd = rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd");

TEST(QuilloModel, ShowsRulesAsAListUnderNewIdentifiers) {
    QuilloModel model;
    model.showRules({shown, shown});
    ASSERT_EQ(model.rules().size(), 2U);
    EXPECT_EQ(ruleFromElement(model.rules()[1]), shown);
    const auto before = model.rules();
    model.showRules({shown});
    EXPECT_NE(model.rules()[0].id, before[0].id);
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST(QuilloModel, KeepsRulesThatCannotBeEditedOutOfTheListAndSaysWhichOne) {
    QuilloModel model;
    model.showRules({shown, odd});
    EXPECT_TRUE(model.rules().empty());
    EXPECT_EQ(model.rulesNotShown(), (PluginData{{shown, odd}}));
    EXPECT_EQ(model.whyNotEditable(),
              "Rule 2 \"odd\" cannot be edited: its pressure is copied from the trigger. The rules run as "
              "they are and stay untouched.");
    model.showRules({shown});
    EXPECT_EQ(model.whyNotEditable(), std::nullopt);
}

TEST(QuilloModel, ShowsRulesThatAreSwitchedOffInTheirPlaces) {
    QuilloModel model;
    model.showRules({shown}, {{0, shown}});
    ASSERT_EQ(model.rules().size(), 2U);
    EXPECT_TRUE(model.rules()[0].off);
    EXPECT_FALSE(model.rules()[1].off);
}

TEST(QuilloModel, AlsoARuleThatIsSwitchedOffCanKeepTheListFromBeingShown) {
    QuilloModel model;
    model.showRules({shown}, {{1, odd}});
    EXPECT_EQ(model.rulesNotShown(), (PluginData{{shown}, {{1, odd}}}));
    EXPECT_EQ(model.whyNotEditable()->substr(0, 32), "Rule 2 \"odd\" cannot be edited: i");
}

TEST(QuilloModel, SaysWhatMustBeKnownBeforeRulesAreEdited) {
    const std::vector rules{
        rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), "old")};
    QuilloModel model;
    model.showRules(rules);
    EXPECT_EQ(model.rules().size(), 1U);
    ASSERT_TRUE(noticeBeforeEditing(elementsFrom(rules)));
    EXPECT_EQ(model.alertErrorMessage(), noticeBeforeEditing(elementsFrom(rules)));
}

TEST(QuilloModel, TheRulesAreShownBeforeWhatMustBeKnownOfThem) {
    QuilloModel model;
    std::size_t shownWithTheAlert = 0;
    const auto observation = model.observeAlert([&] { shownWithTheAlert = model.rules().size(); });
    model.showRules({rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), "old")});
    EXPECT_EQ(shownWithTheAlert, 1U);
}

class QuilloModelAlerts : public testing::Test {
protected:
    QuilloModel model;
    int tells = 0;
    const Observation observation = model.observeAlert([this] { ++tells; });
};

TEST_F(QuilloModelAlerts, AreShownOneAfterTheOther) {
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    model.alert("first");
    model.alert("second");
    model.alert("third");
    EXPECT_EQ(model.alertErrorMessage(), "first");
    EXPECT_EQ(tells, 1);
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), "second");
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), "third");
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    EXPECT_EQ(tells, 4);
    model.dismissAlert();
    EXPECT_EQ(tells, 4);
}

TEST_F(QuilloModelAlerts, AreShownOnceUntilTheyAreDismissed) {
    for (const auto* text : {"first", "second", "first", "second"}) {
        model.alert(text);
    }
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), "second");
    model.alert("first");
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), "first");
    model.dismissAlert();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(QuilloModelAlerts, TakenBackGoWithoutTheOthersWhetherTheyAreShownOrWait) {
    model.alert("first");
    model.alert("second");
    model.alert("third");
    model.takeBackAlert("second");
    EXPECT_EQ(tells, 1);
    model.takeBackAlert("first");
    EXPECT_EQ(model.alertErrorMessage(), "third");
    EXPECT_EQ(tells, 2);
    model.takeBackAlert("first");
    EXPECT_EQ(model.alertErrorMessage(), "third");
    EXPECT_EQ(tells, 2);
}

TEST(QuilloModel, RulesThatCannotBeShownLeaveAnEmptyListAndAReason) {
    QuilloModel model;
    model.setRules(std::vector<RuleEntryIdentifiable>(3));
    model.setNotEditable("because");
    EXPECT_TRUE(model.rules().empty());
    EXPECT_EQ(model.whyNotEditable(), "because");
    EXPECT_EQ(model.rulesNotShown(), std::nullopt) << "Nobody knows them.";
    model.setNotEditable("because", PluginData());
    EXPECT_EQ(model.rulesNotShown(), PluginData());
    model.setRules({});
    EXPECT_EQ(model.whyNotEditable(), std::nullopt);
    EXPECT_EQ(model.rulesNotShown(), std::nullopt);
}

}  // namespace
}  // namespace quillo
