// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/Session.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "persistence/PluginData.hpp"
#include "platform/FatalError.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

class SessionTest : public testing::Test {
protected:
    std::vector<Rule> rules() { return session.processor().rules(); }

    /// The frame of the timeline, counted from the note, at which a rule's output leaves.
    SampleTime delayOfTheOutput() {
        auto& renderer = session.renderer();
        const auto start = renderer.now();
        TestOutput output;
        renderer.begin(1, output);
        renderer.receive(0, Bytes{0x90, 60, 1});
        while (renderer.end() == noErr && output.sent.empty()) {
            renderer.begin(1, output);
        }
        return renderer.now() - 1 - start;
    }

    Session session;
    const std::vector<Rule> swap{
        rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 10), "swap")};
};

TEST_F(SessionTest, WhatIsRestoredIsSavedByteForByte) {
    const auto document = PluginData{swap}.write();
    EXPECT_EQ(session.restore(document), std::nullopt);
    EXPECT_EQ(rules(), swap);
    EXPECT_EQ(session.save(), document);
}

TEST_F(SessionTest, ADocumentThatIsLongerThanAnyIsNotRead) {
    ASSERT_EQ(session.restore(PluginData{swap}.write()), std::nullopt);
    constexpr auto* tooLong =
        "The saved rules cannot be restored: they are larger than 128 MiB, which no list of rules is.";
    Bytes document(Session::longestDocument + 1, 'x');
    EXPECT_EQ(session.restore(document), tooLong);
    document.pop_back();
    EXPECT_NE(session.restore(document), tooLong);
    EXPECT_EQ(rules(), swap);
}

TEST_F(SessionTest, ADocumentThatCannotBeReadLeavesTheRulesAndIsReported) {
    ASSERT_EQ(session.restore(PluginData{swap}.write()), std::nullopt);
    session.viewDidLoad();
    for (const auto* damaged : {"", "{", R"({"rules":[{}]})", "[1]", "\xff\xfe"}) {
        const auto reason = session.restore(bytesOf(damaged));
        ASSERT_TRUE(reason.has_value()) << damaged;
        EXPECT_THAT(*reason, HasSubstr("The saved rules cannot be restored"));
        session.drain();
        EXPECT_EQ(session.model()->alertErrorMessage(), reason);
        session.model()->dismissAlert();
        EXPECT_EQ(rules(), swap);
        EXPECT_EQ(session.model()->rules().size(), 1U);
    }
}

TEST_F(SessionTest, RulesThatCannotBeCompiledLeaveTheRulesAndAreReported) {
    ASSERT_EQ(session.restore(PluginData{swap}.write()), std::nullopt);
    const auto negative = PluginData{{rule(onLoad(), send(noteOn(0, 1, 1), -1))}}.write();
    const auto reason = session.restore(negative);
    ASSERT_TRUE(reason.has_value());
    EXPECT_THAT(*reason, HasSubstr("delay"));
    EXPECT_EQ(rules(), swap);
    session.viewDidLoad();
    session.drain();
    EXPECT_EQ(session.model()->alertErrorMessage(), *reason);
}

TEST_F(SessionTest, WhatWasReportedBeforeTheEditorOpenedIsStillThereThen) {
    session.tellUser("No.");
    session.viewDidLoad();
    session.drain();
    EXPECT_EQ(session.model()->alertErrorMessage(), "No.");
}

TEST_F(SessionTest, RulesThatWereRestoredBeforeTheRateWasKnownKeepTheirMilliseconds) {
    ASSERT_EQ(session.restore(PluginData{swap}.write()), std::nullopt);
    ASSERT_EQ(session.setSampleRate(96000.0), std::nullopt);
    EXPECT_EQ(delayOfTheOutput(), 960);
    ASSERT_EQ(session.setSampleRate(48000.0), std::nullopt);
    EXPECT_EQ(delayOfTheOutput(), 480);
}

TEST_F(SessionTest, ARateAtWhichTheRulesCannotBeCompiledIsRejectedEachTime) {
    constexpr std::int64_t endless = 100'000'000'000'000;
    session.onRulesChanged({rule(onLoad(), send(noteOn(0, 61, 5), endless))});
    for (int i = 0; i < 2; ++i) {
        const auto reason = session.setSampleRate(1e9);
        ASSERT_TRUE(reason.has_value());
        EXPECT_THAT(*reason, HasSubstr("delay"));
    }
    EXPECT_EQ(session.setSampleRate(48000.0), std::nullopt);
}

TEST_F(SessionTest, AnInvalidSampleRateIsRejectedWithAReason) {
    constexpr auto infinite = std::numeric_limits<double>::infinity();
    for (const auto rate :
         {-1.0, 0.0, 0.5, 1e10, infinite, -infinite, std::numeric_limits<double>::quiet_NaN()}) {
        const auto reason = session.setSampleRate(rate);
        ASSERT_TRUE(reason.has_value()) << rate;
        EXPECT_THAT(*reason, HasSubstr("sample rate")) << rate;
    }
    EXPECT_EQ(session.setSampleRate(1.0), std::nullopt);
}

TEST_F(SessionTest, AnEditIsInstalledAndReportedToTheHost) {
    int edits = 0;
    session.setOnEdit([&edits] { ++edits; });
    session.onRulesChanged(swap);
    EXPECT_EQ(rules(), swap);
    EXPECT_EQ(edits, 1);
}

TEST_F(SessionTest, ACycleThatFailsForGoodIsReportedOnce) {
    session.processor().fatalErrors.set("the timeline has ended");
    session.drain();
    const auto& model = *session.model();
    ASSERT_TRUE(model.alertErrorMessage().has_value());
    EXPECT_THAT(*model.alertErrorMessage(), "MIDI Quillo cannot go on. The timeline has ended.");
    session.model()->dismissAlert();
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

/// Half an hour of a host that tries again and again, and no editor to say so in.
TEST_F(SessionTest, FailuresThatPileUpBeforeAnEditorIsOpenAreOneAlertWithTheirNumber) {
    for (int i = 0; i < 20000; ++i) {
        ASSERT_TRUE(session.restore(bytesOf("{")).has_value());
    }
    session.viewDidLoad();
    session.drain();
    auto& model = *session.model();
    EXPECT_THAT(model.alertErrorMessage().value(), testing::EndsWith("(20000 times)"));
    for (int i = 0; i < 2; ++i) {
        session.tellUser("No.");
        session.drain();
    }
    model.dismissAlert();
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), "No.\n\n(2 times)");
    model.dismissAlert();
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(SessionTest, WhatIsTakenBackIsNotShownAnyMoreWhetherItWaitsOrIsShown) {
    auto& model = *session.model();
    session.tellUser("No server.");
    session.takeBack("No server.");
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    session.tellUser("No server.");
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), "No server.");
    session.takeBack("No server.");
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(SessionTest, WhatIsTakenBackIsKnownAlsoWhereItWasCountedOrShortened) {
    auto& model = *session.model();
    const std::string lengthy(2 * PendingAlerts::longest, 'a');
    for (const auto* message : {"No server.", lengthy.c_str()}) {
        session.tellUser(message);
        session.tellUser(message);
        session.drain();
        ASSERT_THAT(model.alertErrorMessage().value(), testing::EndsWith("(2 times)"));
        session.takeBack(message);
        session.drain();
        EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    }
}

TEST_F(SessionTest, WhatTheHostHasNoRoomForIsReportedOnceForEachRule) {
    using Room = HostOutput::Room;
    TestOutput output;
    session.onRulesChanged({rule(onNoteOn(exactly(1)), send(systemExclusive(Bytes(50, 1))), "patch"),
                            rule(onNoteOn(any), send(systemExclusive(Bytes(60, 2))), "dump")});
    output.room = [](std::span<const std::uint8_t> bytes, const HostOutput::Waiting&) {
        return bytes.size() > 10 ? Room::never : Room::enough;
    };
    auto& model = *session.model();
    std::vector<std::string> told;
    for (std::uint8_t note = 2; note > 0; --note) {
        for (int block = 0; block < 10; ++block) {
            session.renderer().begin(16, output);
            session.renderer().receive(0, Bytes{0x90, note, 1});
            EXPECT_EQ(session.renderer().end(), noErr);
            EXPECT_EQ(output.take().size(), 1U);
            for (session.drain(); model.alertErrorMessage(); session.drain()) {
                told.push_back(*model.alertErrorMessage());
                model.dismissAlert();
            }
        }
    }
    EXPECT_THAT(told, testing::ElementsAre(HasSubstr("rule 2 \"dump\""), HasSubstr("rule 1 \"patch\"")));
    EXPECT_EQ(session.renderer().refused().leftOut(), 30U);
}

TEST_F(SessionTest, WhatWasReportedOnceOfAMessageIsNotReportedAgainInOtherWords) {
    session.onRulesChanged({rule(onNoteOn(), send(systemExclusive({1, 2, 3})), "patch")});
    auto& model = *session.model();
    const Bytes patch{0xF0, 1, 2, 3, 0xF7};
    session.renderer().refused().add(patch, true);
    session.drain();
    EXPECT_THAT(model.alertErrorMessage().value(), HasSubstr("\"patch\""));
    model.dismissAlert();
    session.onRulesChanged({rule(onNoteOn(), send(systemExclusive({1, 2, 3})), "patch again")});
    session.renderer().refused().add(patch, true);
    session.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(SessionTest, ADrainTakesAllTheRefusalsThatAreKept) {
    auto& refused = session.renderer().refused();
    for (std::uint64_t count = 0; count < RefusedMessages::room; ++count) {
        refused.add(Bytes{0xC0, 1}, false);
    }
    session.drain();
    EXPECT_FALSE(refused.takeNext().has_value());
}

TEST_F(SessionTest, RefusalsWithoutEndAreReportedToALimit) {
    auto& model = *session.model();
    std::size_t told = 0;
    for (std::size_t size = 1; size <= 1000; ++size) {
        session.renderer().refused().add(Bytes(size, 0xF0), true);
        for (session.drain(); model.alertErrorMessage(); session.drain()) {
            ++told;
            model.dismissAlert();
        }
    }
    EXPECT_EQ(told, 100U);
}

TEST_F(SessionTest, AViewThatIsLoadedShowsTheRulesThatRunWhereverTheyCameFrom) {
    session.onRulesChanged(swap);
    session.viewDidLoad();
    ASSERT_EQ(session.model()->rules().size(), 1U);
    EXPECT_EQ(session.model()->rules()[0].rule.name, "swap");
}

TEST_F(SessionTest, EveryRestoredStateIsShown) {
    session.viewDidLoad();
    for (const auto& restored : {swap, std::vector<Rule>{}, swap}) {
        ASSERT_EQ(session.restore(PluginData{restored}.write()), std::nullopt);
        session.drain();
        ASSERT_EQ(session.model()->rules().size(), restored.size());
    }
}

TEST_F(SessionTest, RulesThatCannotBeSavedAreToldOfAndKept) {
    const std::vector<Rule> unwritable{rule(onLoad(), send(noteOn(1, 61, 5)), "\xFF")};
    session.onRulesChanged(unwritable);
    EXPECT_EQ(session.trySave(), std::nullopt);
    session.viewDidLoad();
    session.drain();
    EXPECT_THAT(session.model()->alertErrorMessage(),
                Optional(StartsWith("The rules cannot be saved with the project: ")));
    EXPECT_EQ(rules(), unwritable);
}

TEST_F(SessionTest, AnEditOfTheRulesBeforeDoesNotReplaceRestoredOnes) {
    int edits = 0;
    session.setOnEdit([&edits] { ++edits; });
    session.viewDidLoad();
    const auto document = PluginData{swap}.write();
    ASSERT_EQ(session.restore(document), std::nullopt);
    session.onRulesChanged({});
    EXPECT_EQ(session.save(), document);
    EXPECT_EQ(edits, 0);
    session.drain();
    EXPECT_EQ(session.model()->rules().size(), 1U);
    session.onRulesChanged({});
    EXPECT_EQ(rules(), std::vector<Rule>{});
    EXPECT_EQ(edits, 1);
}

TEST_F(SessionTest, ManyRestoredStatesAreShownOnce) {
    session.viewDidLoad();
    session.drain();
    int shown = 0;
    const auto observation = session.model()->observeRules([&shown] { ++shown; });
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(session.restore(PluginData{swap}.write()), std::nullopt);
    }
    session.drain();
    EXPECT_EQ(shown, 1);
}

TEST_F(SessionTest, RulesThatAreSwitchedOffAreKeptWithTheirPlacesAndDoNotRun) {
    const auto document = PluginData{swap, {{0, swap[0]}, {1, swap[0]}}}.write();
    ASSERT_EQ(session.restore(document), std::nullopt);
    EXPECT_EQ(rules(), swap);
    EXPECT_EQ(session.save(), document);
    ASSERT_EQ(session.setSampleRate(44100.0), std::nullopt);
    EXPECT_EQ(session.save(), document);
}

TEST_F(SessionTest, AnEditReplacesWhatIsSwitchedOffAndARejectedOneDoesNot) {
    session.onRulesChanged({}, {{0, swap[0]}});
    const auto document = PluginData{{}, {{0, swap[0]}}}.write();
    EXPECT_EQ(session.save(), document);
    EXPECT_THROW(session.onRulesChanged({rule(onLoad(), send(noteOn(0, 1, 1), -1))}), FatalError);
    EXPECT_TRUE(session.restore(bytesOf(R"({"rules":[],"shelf":[{"place":1}]})")).has_value());
    EXPECT_EQ(session.save(), document);
    session.onRulesChanged(swap);
    EXPECT_EQ(session.save(), PluginData{swap}.write());
}

TEST_F(SessionTest, ARejectedEditIsToldOfByTheRulesNumberInTheWholeList) {
    try {
        session.onRulesChanged({rule(onLoad(), send(noteOn(0, 1, 1), -1))}, {{0, swap[0]}});
        FAIL() << "the edit was taken";
    } catch (const FatalError& error) {
        EXPECT_THAT(error.inWords(), StartsWith("Rule 2: a delay is negative"));
    }
}

TEST_F(SessionTest, AnEditorShowsWhatIsSwitchedOff) {
    session.install(swap, {{1, swap[0]}});
    session.viewDidLoad();
    ASSERT_EQ(session.model()->rules().size(), 2U);
    EXPECT_TRUE(session.model()->rules()[1].off);
}

}  // namespace
}  // namespace quillo
