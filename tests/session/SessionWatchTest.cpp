// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "persistence/PluginData.hpp"
#include "session/Session.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;

/// A session at 1000 frames a second, as an editor sees it: hits, what waits, panic.
class SessionWatchTest : public testing::Test {
protected:
    SessionWatchTest() { EXPECT_EQ(session.setSampleRate(1000.0), std::nullopt); }

    Timed block(std::uint32_t frames, const Timed& messages = {}) {
        TestOutput output;
        session.renderer().begin(frames, output);
        for (const auto& [offset, bytes] : messages) {
            session.renderer().receive(offset, bytes);
        }
        EXPECT_EQ(session.renderer().end(), noErr);
        return output.take();
    }

    void openEditor() {
        session.viewDidLoad();
        session.drain();
    }

    /// As the editor does it: the engine has the list first, and then the model shows it.
    void edit(const std::vector<Rule>& rules) {
        session.onRulesChanged(rules);
        std::vector<RuleEntryIdentifiable> list;
        for (const auto& rule : rules) {
            list.push_back(elementFromRule(rule));
        }
        model().setRules(list);
    }

    /// The numbers of what is shown to wait, once the render thread has had its block.
    std::vector<std::uint64_t> numbersOfWhatWaits() {
        session.drain();
        block(1);
        session.drain();
        std::vector<std::uint64_t> numbers;
        for (const auto& output : model().waiting()) {
            numbers.push_back(output.number);
        }
        return numbers;
    }

    QuilloModel& model() { return *session.model(); }

    Session session;
    const Rule swap = rule(onNoteOn(exactly(60)), send(noteOn(0, 61, 5)), "swap");
    const Rule echo = rule(onNoteOn(), send(noteOn(1, 62, 6), 100), "an echo of the note");
    const Rule pedal = rule(onControlChange(64), send(controlChange(0, 1, 2)), "pedal");
};

TEST_F(SessionWatchTest, HitsStandByTheirRulesAmongThoseThatAreSwitchedOff) {
    session.install({swap, echo}, {{0, pedal}, {1, pedal}});
    openEditor();
    block(1000, {{0, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{}, {1, 1.0}, {}, {1, 1.0}}));
}

TEST_F(SessionWatchTest, HitsAreSeenInAWindowThatIsOpenedLater) {
    session.install({swap, echo, pedal});
    block(500, {{100, {0x90, 60, 1}}, {200, {0x90, 70, 1}}});
    block(500);
    openEditor();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 0.9}, {2, 0.8}, {}}));
}

/// On loading the first sends at once, the second 30 ms later, and the one that is switched off nothing.
class SendAllOnLoad : public SessionWatchTest {
protected:
    SendAllOnLoad() {
        session.install({rule(onLoad(), send(controlChange(0, 7, 90))), echo,
                         rule(onLoad(), send(controlChange(1, 10, 64), 30))},
                        {{0, rule(onLoad(), send(controlChange(2, 1, 1)))}});
    }

    const Timed asOnLoading{{0, {0xB0, 7, 90}}, {30, {0xB1, 10, 64}}};
};

TEST_F(SendAllOnLoad, SendsWhatWasSentOnLoadingWithItsDelaysAndOnce) {
    EXPECT_EQ(block(100), asOnLoading);
    EXPECT_EQ(block(100), Timed());
    session.sendAllOnLoad();
    session.sendAllOnLoad();
    EXPECT_EQ(block(100), asOnLoading);
    EXPECT_EQ(block(100), Timed());
}

TEST_F(SendAllOnLoad, AskedBeforeTheFirstBlockAddsNothingToTheLoading) {
    session.sendAllOnLoad();
    EXPECT_EQ(block(100), asOnLoading);
    EXPECT_EQ(block(100), Timed());
}

TEST_F(SendAllOnLoad, AlsoSendsForRulesThatWereMadeSince) {
    block(100);
    session.onRulesChanged({rule(onLoad(), send(controlChange(3, 7, 1)))});
    EXPECT_EQ(block(100), Timed());
    session.sendAllOnLoad();
    EXPECT_EQ(block(100), (Timed{{0, {0xB3, 7, 1}}}));
}

TEST_F(SendAllOnLoad, WaitsForTheNextCycleWhereMessagesOnlyPass) {
    block(100);
    session.sendAllOnLoad();
    TestOutput output;
    session.renderer().beginPassing(100, output, BlockRenderer::Delivery::asItComes);
    EXPECT_EQ(session.renderer().end(), noErr);
    EXPECT_EQ(output.take(), Timed());
    EXPECT_EQ(block(100), asOnLoading);
}

TEST_F(SessionWatchTest, ARuleThatFiresOnLoadIsCountedToo) {
    session.install({rule(onLoad(), send(noteOn(0, 1, 1))), rule(onLoad(), send(noteOn(0, 1, 1), 7000))});
    block(1000);
    openEditor();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 1.0}, {1, 1.0}}));
}

TEST_F(SessionWatchTest, ARuleIsCountedWhatBecomesOfItsMessage) {
    session.install({swap, echo});
    TestOutput full;
    full.room = [](HostOutput::Bytes, const HostOutput::Waiting&) { return HostOutput::Room::full; };
    session.renderer().begin(10, full);
    session.renderer().receive(0, Bytes{0x90, 60, 1});
    EXPECT_NE(session.renderer().end(), noErr);
    openEditor();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 0.01}, {}}));
}

TEST_F(SessionWatchTest, AnEditOfOneRuleKeepsTheHitsOfTheOthersAtOnce) {
    session.install({swap, echo, pedal});
    openEditor();
    block(500, {{0, {0x90, 60, 1}}, {0, {0xB0, 64, 1}}});
    auto other = echo;
    other.output.delay.ms = 50;
    edit({swap, other, pedal});
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 0.5}, {}, {1, 0.5}}));
    edit({pedal, swap});
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 0.5}, {1, 0.5}}));
    block(500, {{0, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 1.0}, {2, 0.5}}));
}

TEST_F(SessionWatchTest, AStateThatIsRestoredBeginsToCountAnew) {
    session.install({swap});
    openEditor();
    block(500, {{0, {0x90, 60, 1}}});
    edit({swap, pedal});
    ASSERT_EQ(session.restore(PluginData{{swap}}.write()), std::nullopt);
    session.drain();
    EXPECT_EQ(model().hits(), std::vector<RuleHits>(1));
}

TEST_F(SessionWatchTest, AnotherSampleRateKeepsTheHits) {
    session.install({swap});
    block(500, {{0, {0x90, 60, 1}}});
    ASSERT_EQ(session.setSampleRate(2000.0), std::nullopt);
    block(500);
    openEditor();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{1, 0.75}}));
}

TEST_F(SessionWatchTest, NoHitsAreShownOfRulesThatAreNot) {
    session.install({rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)))});
    openEditor();
    EXPECT_TRUE(model().rules().empty());
    EXPECT_TRUE(model().hits().empty());
}

TEST_F(SessionWatchTest, WhatWaitsIsCountedAlwaysAndListedWhileItIsWatched) {
    session.install({echo});
    openEditor();
    block(100, {{10, {0x90, 60, 1}}, {40, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(model().waitingCount(), 2U);
    EXPECT_TRUE(model().waiting().empty());
    session.watchWaiting(true);
    session.drain();
    EXPECT_EQ(block(5), Timed());
    session.drain();
    const MessageList sent(MIDIMessage{0x91, 62, 6});
    EXPECT_EQ(model().waiting(), (std::vector<WaitingOutput>{{1, 0.005, sent, "an echo of the note"},
                                                             {2, 0.035, sent, "an echo of the note"}}));
    block(10);
    session.drain();
    EXPECT_EQ(model().waiting(), (std::vector<WaitingOutput>{{2, 0.025, sent, "an echo of the note"}}));
    session.watchWaiting(false);
    session.drain();
    EXPECT_EQ(model().waitingCount(), 1U);
    EXPECT_TRUE(model().waiting().empty());
}

/// Equal times in the order in which they were fired.
TEST_F(SessionWatchTest, WhatWaitsIsListedInTheOrderInWhichItLeaves) {
    session.install({rule(onNoteOn(exactly(1)), send(noteOn(0, 1, 1), 10)),
                     rule(onNoteOn(exactly(2)), send(noteOn(0, 2, 1), 20)),
                     rule(onNoteOn(exactly(3)), send(noteOn(0, 3, 1), 30))});
    openEditor();
    session.watchWaiting(true);
    block(1, {{0, {0x90, 1, 1}}, {0, {0x90, 3, 1}}, {0, {0x90, 2, 1}}, {0, {0x90, 3, 1}}, {0, {0x90, 1, 1}}});
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(1, 5, 3, 2, 4));
}

TEST_F(SessionWatchTest, AnOutputThatWaitsHasTheNameThatItsRuleHadWhenItFired) {
    session.install({echo});
    openEditor();
    session.watchWaiting(true);
    block(10, {{0, {0x90, 60, 1}}});
    auto renamed = echo;
    renamed.name.clear();
    edit({renamed});
    block(10, {{0, {0x90, 60, 1}}});
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(1, 2));
    EXPECT_EQ(model().waiting()[0].ruleName, "an echo of the note");
    EXPECT_EQ(model().waiting()[1].ruleName, "");
}

TEST_F(SessionWatchTest, OneOfTwoEqualOutputsIsCancelled) {
    session.install({echo});
    openEditor();
    session.watchWaiting(true);
    block(10, {{0, {0x90, 60, 1}}, {0, {0x90, 60, 1}}});
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(1, 2));
    session.cancelWaiting(1);
    block(1);
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(2));
    EXPECT_EQ(model().waitingCount(), 1U);
    EXPECT_EQ(block(200), (Timed{{100 - 10 - 3, {0x91, 62, 6}}}));
}

TEST_F(SessionWatchTest, SeveralAreCancelledOneInEachBlock) {
    session.install({echo});
    openEditor();
    session.watchWaiting(true);
    block(10, {{0, {0x90, 60, 1}}, {1, {0x90, 60, 1}}, {2, {0x90, 60, 1}}, {3, {0x90, 60, 1}}});
    for (const auto number : std::vector<std::uint64_t>{4, 99, 1, 2}) {
        session.cancelWaiting(number);
    }
    for (int i = 0; i < 4; ++i) {
        block(1);
        session.drain();
    }
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(3));
}

TEST_F(SessionWatchTest, AllThatWaitsIsCancelled) {
    session.install({echo});
    openEditor();
    block(10, {{0, {0x90, 60, 1}}, {0, {0x90, 60, 1}}});
    session.cancelAllWaiting();
    EXPECT_EQ(block(200), Timed());
    session.drain();
    EXPECT_EQ(model().waitingCount(), 0U);
}

TEST_F(SessionWatchTest, NothingIsListedAnyMoreOnceNothingWaitsThoughNoBlockFollows) {
    session.install({echo});
    openEditor();
    session.watchWaiting(true);
    block(10, {{0, {0x90, 60, 1}}});
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(1));
    block(1);
    session.cancelAllWaiting();
    block(1);
    session.drain();
    EXPECT_EQ(model().waitingCount(), 0U);
    EXPECT_TRUE(model().waiting().empty());
}

TEST_F(SessionWatchTest, AListThatIsOpenedAgainShowsNothingOfBefore) {
    session.install({echo});
    openEditor();
    session.watchWaiting(true);
    block(10, {{0, {0x90, 60, 1}}});
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(1));
    block(1);
    session.watchWaiting(false);
    session.cancelAllWaiting();
    block(10);
    block(10, {{0, {0x90, 61, 1}}});
    session.watchWaiting(true);
    session.drain();
    EXPECT_TRUE(model().waiting().empty());
    EXPECT_THAT(numbersOfWhatWaits(), ElementsAre(2));
}

TEST_F(SessionWatchTest, NothingWaitsAnyMoreWhenItIsCancelledWhereMessagesOnlyPass) {
    for (const bool isPanic : {true, false}) {
        session.install({echo});
        openEditor();
        block(50, {{0, {0x90, 60, 1}}});
        session.drain();
        EXPECT_EQ(model().waitingCount(), 1U);
        isPanic ? session.panic() : session.cancelAllWaiting();
        TestOutput output;
        session.renderer().beginPassing(50, output, BlockRenderer::Delivery::asItComes);
        EXPECT_EQ(session.renderer().end(), noErr);
        session.drain();
        EXPECT_EQ(model().waitingCount(), 0U);
    }
}

TEST_F(SessionWatchTest, OutputsThatAreLostForWantOfRoomAreToldOfOnce) {
    session.install({echo});
    Timed notes(RuleProcessor::delayCapacity, {0, {0x90, 60, 1}});
    block(1, notes);
    openEditor();
    EXPECT_EQ(model().alertErrorMessage(), std::nullopt);
    block(1, {{0, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(
        model().alertErrorMessage(),
        "More than 10,000 delayed outputs waited at one time: those that were to leave first are lost, "
        "the ends of notes perhaps among them. Shorter delays, or fewer rules with one, let less wait.");
    model().dismissAlert();
    block(1, {{0, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(model().alertErrorMessage(), std::nullopt);
}

TEST_F(SessionWatchTest, PanicSaysWhatItDidUntilThatIsDismissed) {
    session.install({echo});
    openEditor();
    int changes = 0;
    const auto observation = model().observePanic([&changes] { ++changes; });
    block(10, {{0, {0x90, 60, 1}}, {0, {0xB0, 64, 127}}});
    session.panic();
    session.drain();
    EXPECT_EQ(model().panicAnswer(), std::nullopt);
    block(1);
    session.drain();
    EXPECT_EQ(model().panicAnswer(), "Stopped 1 note, let go of 1 pedal, cancelled 1 waiting message");
    model().dismissPanicAnswer();
    model().dismissPanicAnswer();
    EXPECT_EQ(model().panicAnswer(), std::nullopt);
    EXPECT_EQ(changes, 2);
    session.panic();
    block(1);
    session.drain();
    EXPECT_EQ(model().panicAnswer(), "Nothing was sounding");
}

TEST_F(SessionWatchTest, RestoredRulesAreShownWithTheHitsThatTheyHaveAlready) {
    openEditor();
    ASSERT_EQ(session.restore(PluginData{{pedal, echo}}.write()), std::nullopt);
    block(1000, {{0, {0x90, 60, 1}}});
    session.drain();
    EXPECT_EQ(model().hits(), (std::vector<RuleHits>{{}, {1, 1.0}}));
}

TEST_F(SessionWatchTest, NotesEndWhenRulesChangeOnlyIfThatWasAskedFor) {
    openEditor();
    block(10, {{0, {0x90, 60, 1}}});
    EXPECT_FALSE(session.notesEndWhenRulesChange());
    edit({swap});
    session.install({echo});
    session.drain();
    EXPECT_EQ(block(10), Timed());
    session.setNotesEndWhenRulesChange(true);
    EXPECT_TRUE(session.notesEndWhenRulesChange());
    EXPECT_EQ(block(10), Timed());
    edit({swap});
    EXPECT_EQ(block(10), (Timed{{0, {0x80, 60, 64}}}));
    block(10, {{0, {0x90, 70, 1}}});
    ASSERT_EQ(session.restore(PluginData{{echo}}.write()), std::nullopt);
    EXPECT_EQ(block(10), (Timed{{0, {0x80, 70, 64}}}));
}

}  // namespace
}  // namespace quillo
