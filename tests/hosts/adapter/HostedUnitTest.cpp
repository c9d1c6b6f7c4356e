// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostedUnit.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "persistence/PluginData.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

class HostedUnitTest : public testing::Test {
protected:
    std::vector<Rule> rules() { return hosted.unit().processor->rules(); }

    /// The frame of the timeline, counted from the note, at which a rule's output leaves.
    SampleTime delayOfTheOutput() {
        auto& renderer = hosted.renderer();
        const auto start = renderer.now();
        renderer.begin(1);
        renderer.receive(0, Bytes{0x90, 60, 1});
        while (renderer.end() == noErr && renderer.outgoing().inTimeOrder().empty()) {
            renderer.begin(1);
        }
        return renderer.now() - 1 - start;
    }

    HostedUnit hosted;
    const std::vector<Rule> swap{
        rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 10), "swap")};
};

TEST_F(HostedUnitTest, WhatIsRestoredIsSavedByteForByte) {
    const auto document = PluginData{swap}.write();
    EXPECT_EQ(hosted.restore(document), std::nullopt);
    EXPECT_EQ(rules(), swap);
    EXPECT_EQ(hosted.save(), document);
}

TEST_F(HostedUnitTest, ADocumentThatCannotBeReadLeavesTheRulesAndTheUserIsTold) {
    ASSERT_EQ(hosted.restore(PluginData{swap}.write()), std::nullopt);
    hosted.controller().viewDidLoad();
    for (const auto* damaged : {"", "{", R"({"rules":[{}]})", "[1]", "\xff\xfe"}) {
        const auto reason = hosted.restore(bytesOf(damaged));
        ASSERT_TRUE(reason.has_value()) << damaged;
        EXPECT_THAT(*reason, HasSubstr("The saved rules cannot be restored"));
        hosted.drain();
        EXPECT_EQ(hosted.controller().model()->alertErrorMessage(), reason);
        hosted.controller().model()->dismissAlert();
        EXPECT_EQ(rules(), swap);
        EXPECT_EQ(hosted.controller().model()->rules().size(), 1U);
    }
}

TEST_F(HostedUnitTest, RulesThatCannotBeCompiledLeaveTheRulesAndTheUserIsTold) {
    ASSERT_EQ(hosted.restore(PluginData{swap}.write()), std::nullopt);
    const auto negative = PluginData{{rule(onLoad(), send(noteOn(0, 1, 1), -1))}}.write();
    const auto reason = hosted.restore(negative);
    ASSERT_TRUE(reason.has_value());
    EXPECT_THAT(*reason, HasSubstr("delay"));
    EXPECT_EQ(rules(), swap);
}

TEST_F(HostedUnitTest, WhatTheUserWasToldBeforeTheEditorOpenedIsStillThereThen) {
    hosted.tellUser("No.");
    hosted.controller().viewDidLoad();
    hosted.drain();
    EXPECT_EQ(hosted.controller().model()->alertErrorMessage(), "No.");
}

TEST_F(HostedUnitTest, RulesThatWereRestoredBeforeTheRateWasKnownKeepTheirMilliseconds) {
    ASSERT_EQ(hosted.restore(PluginData{swap}.write()), std::nullopt);
    ASSERT_EQ(hosted.activate(96000.0, 512), std::nullopt);
    EXPECT_EQ(delayOfTheOutput(), 960);
    hosted.deactivate();
    ASSERT_EQ(hosted.activate(48000.0, 512), std::nullopt);
    EXPECT_EQ(delayOfTheOutput(), 480);
}

TEST_F(HostedUnitTest, ARateAtWhichTheRulesCannotBeCompiledIsRejectedEachTime) {
    constexpr std::int64_t endless = 100'000'000'000'000;
    hosted.onRulesChanged({rule(onLoad(), send(noteOn(0, 61, 5), endless))});
    for (int i = 0; i < 2; ++i) {
        const auto reason = hosted.activate(1e9, 512);
        ASSERT_TRUE(reason.has_value());
        EXPECT_THAT(*reason, HasSubstr("delay"));
    }
    EXPECT_EQ(hosted.activate(48000.0, 512), std::nullopt);
}

TEST_F(HostedUnitTest, ASampleRateThatIsNoneIsRefusedWithAReason) {
    constexpr auto infinite = std::numeric_limits<double>::infinity();
    for (const auto rate :
         {-1.0, 0.0, 0.5, 1e10, infinite, -infinite, std::numeric_limits<double>::quiet_NaN()}) {
        const auto reason = hosted.activate(rate, 512);
        ASSERT_TRUE(reason.has_value()) << rate;
        EXPECT_THAT(*reason, HasSubstr("sample rate")) << rate;
    }
    EXPECT_EQ(hosted.activate(1.0, 512), std::nullopt);
}

TEST_F(HostedUnitTest, ABlockWithoutFramesAsTheLongestIsRefusedWithAReason) {
    const auto reason = hosted.activate(48000.0, 0);
    ASSERT_TRUE(reason.has_value());
    EXPECT_THAT(*reason, HasSubstr("-10851"));
}

TEST_F(HostedUnitTest, AnEditIsInstalledAndTheHostIsTold) {
    int edits = 0;
    hosted.setOnEdit([&edits] { ++edits; });
    hosted.onRulesChanged(swap);
    EXPECT_EQ(rules(), swap);
    EXPECT_EQ(edits, 1);
}

TEST_F(HostedUnitTest, ACycleThatFailsForGoodIsToldOnce) {
    hosted.unit().processor->fatalErrors.set("the timeline has ended");
    hosted.drain();
    const auto& model = *hosted.controller().model();
    ASSERT_TRUE(model.alertErrorMessage().has_value());
    EXPECT_THAT(*model.alertErrorMessage(), "MIDI Quillo cannot go on. The timeline has ended.");
    hosted.controller().model()->dismissAlert();
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

/// Half an hour of a host that tries again and again, and no editor to say so in.
TEST_F(HostedUnitTest, FailuresThatPileUpBeforeAnEditorIsOpenAreOneAlertWithTheirNumber) {
    for (int i = 0; i < 20000; ++i) {
        ASSERT_TRUE(hosted.restore(bytesOf("{")).has_value());
    }
    hosted.tellUser("No.");
    hosted.controller().viewDidLoad();
    hosted.drain();
    auto& model = *hosted.controller().model();
    EXPECT_THAT(model.alertErrorMessage().value(), testing::EndsWith("(20000 times)"));
    hosted.drain();
    model.dismissAlert();
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), "No.");
    model.dismissAlert();
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(HostedUnitTest, WhatIsTakenBackIsNotShownAnyMoreWhetherItWaitsOrIsShown) {
    auto& model = *hosted.controller().model();
    hosted.tellUser("No server.");
    hosted.takeBack("No server.");
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    hosted.tellUser("No server.");
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), "No server.");
    hosted.takeBack("No server.");
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(HostedUnitTest, WhatIsTakenBackIsKnownAlsoWhereItWasCountedOrShortened) {
    auto& model = *hosted.controller().model();
    const std::string lengthy(2 * PendingAlerts::longest, 'a');
    for (const auto* message : {"No server.", lengthy.c_str()}) {
        hosted.tellUser(message);
        hosted.tellUser(message);
        hosted.drain();
        ASSERT_THAT(model.alertErrorMessage().value(), testing::EndsWith("(2 times)"));
        hosted.takeBack(message);
        hosted.drain();
        EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
    }
}

TEST_F(HostedUnitTest, WhatTheHostHasNoRoomForIsToldOnceForEachRule) {
    using Room = BlockRenderer::Room;
    hosted.onRulesChanged({rule(onNoteOn(exactly(1)), send(systemExclusive(Bytes(50, 1))), "patch"),
                           rule(onNoteOn(any), send(systemExclusive(Bytes(60, 2))), "dump")});
    hosted.renderer().setAsk([](std::uint32_t, std::span<const std::uint8_t> bytes) {
        return bytes.size() > 10 ? Room::never : Room::enough;
    });
    auto& model = *hosted.controller().model();
    std::vector<std::string> told;
    for (std::uint8_t note = 2; note > 0; --note) {
        for (int block = 0; block < 10; ++block) {
            hosted.renderer().begin(16);
            hosted.renderer().receive(0, Bytes{0x90, note, 1});
            EXPECT_EQ(hosted.renderer().end(), noErr);
            EXPECT_EQ(hosted.renderer().outgoing().inTimeOrder().size(), 1U);
            for (hosted.drain(); model.alertErrorMessage(); hosted.drain()) {
                told.push_back(*model.alertErrorMessage());
                model.dismissAlert();
            }
        }
    }
    EXPECT_THAT(told, testing::ElementsAre(HasSubstr("rule 2, \"dump\""), HasSubstr("rule 1, \"patch\"")));
    EXPECT_EQ(hosted.renderer().refused().count(), 30U);
}

TEST_F(HostedUnitTest, WhatWasToldOnceOfAMessageIsNotToldAgainInOtherWords) {
    hosted.onRulesChanged({rule(onNoteOn(), send(systemExclusive({1, 2, 3})), "patch")});
    auto& model = *hosted.controller().model();
    const Bytes patch{0xF0, 1, 2, 3, 0xF7};
    hosted.renderer().refused().add(patch, true);
    hosted.drain();
    EXPECT_THAT(model.alertErrorMessage().value(), HasSubstr("\"patch\""));
    model.dismissAlert();
    hosted.onRulesChanged({rule(onNoteOn(), send(systemExclusive({1, 2, 3})), "patch again")});
    hosted.renderer().refused().add(patch, true);
    hosted.drain();
    EXPECT_EQ(model.alertErrorMessage(), std::nullopt);
}

TEST_F(HostedUnitTest, RefusalsWithoutEndAreToldOfNoMoreAtLast) {
    auto& model = *hosted.controller().model();
    std::size_t told = 0;
    for (std::size_t size = 1; size <= 1000; ++size) {
        hosted.renderer().refused().add(Bytes(size, 0xF0), true);
        for (hosted.drain(); model.alertErrorMessage(); hosted.drain()) {
            ++told;
            model.dismissAlert();
        }
    }
    EXPECT_EQ(told, 100U);
}

TEST_F(HostedUnitTest, ManyRestoredStatesAreShownOnce) {
    hosted.controller().viewDidLoad();
    hosted.drain();
    int shown = 0;
    const auto observation = hosted.controller().model()->observeRules([&shown] { ++shown; });
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(hosted.restore(PluginData{swap}.write()), std::nullopt);
    }
    hosted.drain();
    EXPECT_EQ(shown, 1);
}

}  // namespace
}  // namespace quillo
