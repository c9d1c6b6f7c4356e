// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/AudioUnitViewController.hpp"

#include <gtest/gtest.h>

#include <thread>

#include "audiounit/platform/RenderEventList.hpp"
#include "platform/FatalError.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

class ControllerTest : public testing::Test {
protected:
    MIDIQuilloAUAudioUnit& create() {
        auto result = controller->createAudioUnit(midiQuilloComponent);
        return *std::get<std::shared_ptr<MIDIQuilloAUAudioUnit>>(result);
    }

    void createInBackground() {
        std::thread([this] { create(); }).join();
    }

    std::vector<std::string> shownNames() {
        std::vector<std::string> names;
        for (const auto& element : controller->model()->rules()) {
            names.push_back(element.rule.name);
        }
        return names;
    }

    void render(SampleTime time, const std::vector<Bytes>& messages = {}) {
        RenderEventList events(messages.size());
        for (const auto& message : messages) {
            ASSERT_TRUE(events.tryPushMIDI(time, message));
        }
        const auto block = controller->audioUnit()->internalRenderBlock();
        ASSERT_EQ(block(AudioTimeStamp{static_cast<double>(time)}, 512, events.head()), noErr);
    }

    MainQueue queue;
    std::shared_ptr<AudioUnitViewController> controller = std::make_shared<AudioUnitViewController>(queue);
};

using Names = std::vector<std::string>;

TEST_F(ControllerTest, AUnitCreatedAfterTheViewIsConnectedAtOnce) {
    controller->viewDidLoad();
    EXPECT_TRUE(controller->needsConnection());
    create();
    EXPECT_FALSE(controller->needsConnection());
}

TEST_F(ControllerTest, AViewLoadedAfterTheUnitShowsItsRules) {
    auto& unit = create();
    unit.processor->setRules(oneRule);
    EXPECT_TRUE(controller->needsConnection());
    controller->viewDidLoad();
    EXPECT_FALSE(controller->needsConnection());
    EXPECT_EQ(shownNames(), Names{"one"});
    EXPECT_EQ(ruleFromEntry(controller->model()->rules()[0].rule), oneRule[0]);
}

TEST_F(ControllerTest, AUnitCreatedInTheBackgroundBeforeTheViewWaitsForIt) {
    createInBackground();
    queue.drain();
    EXPECT_TRUE(controller->needsConnection());
    controller->viewDidLoad();
    EXPECT_FALSE(controller->needsConnection());
}

TEST_F(ControllerTest, AUnitCreatedInTheBackgroundAfterTheViewIsConnectedByTheMainQueue) {
    controller->viewDidLoad();
    createInBackground();
    EXPECT_TRUE(controller->needsConnection());
    queue.drain();
    EXPECT_FALSE(controller->needsConnection());
}

TEST_F(ControllerTest, TheFactoryHandsBackTheUnitsErrorAndStaysWithoutAUnit) {
    const auto result = controller->createAudioUnit(AudioComponentDescription{});
    EXPECT_EQ(std::get<NSError>(result).code, kAudioComponentErr_InvalidComponentID);
    EXPECT_EQ(controller->audioUnit(), nullptr);
    controller->viewDidLoad();
    EXPECT_TRUE(controller->needsConnection());
}

TEST_F(ControllerTest, AUnitThatAHostHasMadeIsConnectedLikeItsOwn) {
    const auto unit = makeUnit();
    unit->processor->setRules(oneRule);
    controller->viewDidLoad();
    controller->adoptAudioUnit(unit);
    EXPECT_EQ(controller->audioUnit(), unit);
    EXPECT_EQ(shownNames(), Names{"one"});
}

TEST_F(ControllerTest, AUnitAdoptedInTheBackgroundIsConnectedByTheMainQueue) {
    controller->viewDidLoad();
    std::thread([this] { controller->adoptAudioUnit(makeUnit()); }).join();
    EXPECT_TRUE(controller->needsConnection());
    queue.drain();
    EXPECT_FALSE(controller->needsConnection());
}

TEST_F(ControllerTest, ARestoredStateReplacesTheListUnderNewIdentifiers) {
    auto& unit = create();
    unit.processor->setRules(oneRule);
    const auto state = unit.fullState();
    controller->viewDidLoad();
    const auto before = controller->model()->rules();
    unit.setFullState(state);
    EXPECT_EQ(controller->model()->rules(), before);
    queue.drain();
    ASSERT_EQ(controller->model()->rules().size(), 1U);
    EXPECT_EQ(controller->model()->rules()[0].rule, before[0].rule);
    EXPECT_NE(controller->model()->rules()[0].id, before[0].id);
}

TEST_F(ControllerTest, EveryRestoredStateIsShown) {
    auto& unit = create();
    const auto none = unit.fullState();
    unit.processor->setRules(oneRule);
    const auto one = unit.fullState();
    controller->viewDidLoad();
    unit.setFullState(none);
    queue.drain();
    EXPECT_EQ(shownNames(), Names{});
    unit.setFullState(one);
    queue.drain();
    EXPECT_EQ(shownNames(), Names{oneRule[0].name});
    unit.setFullState(none);
    queue.drain();
    EXPECT_EQ(shownNames(), Names{});
}

TEST_F(ControllerTest, AnEditOfTheListBeforeDoesNotUndoARestore) {
    auto& unit = create();
    controller->viewDidLoad();
    unit.processor->setRules(oneRule);
    unit.setFullState(unit.fullState());
    controller->onRulesChanged({});
    EXPECT_EQ(unit.processor->rules(), oneRule);
    queue.drain();
    EXPECT_EQ(shownNames(), Names{"one"});
    controller->onRulesChanged({});
    EXPECT_EQ(unit.processor->rules(), std::vector<Rule>());
}

TEST_F(ControllerTest, ARestoreNotifiesTheViewsOnce) {
    auto& unit = create();
    controller->viewDidLoad();
    int told = 0;
    const auto observation = controller->model()->observeRules([&told] { ++told; });
    unit.setFullState(unit.fullState());
    queue.drain();
    EXPECT_EQ(told, 1);
}

TEST_F(ControllerTest, EditedRulesReachTheProcessor) {
    create();
    controller->onRulesChanged(oneRule);
    EXPECT_EQ(controller->audioUnit()->processor->rules(), oneRule);
}

TEST_F(ControllerTest, WhatIsSwitchedOffReachesTheUnitAndComesBack) {
    auto& unit = create();
    controller->viewDidLoad();
    controller->onRulesChanged(oneRule, {{0, oneRule[0]}});
    EXPECT_EQ(unit.processor->rules(), oneRule);
    EXPECT_EQ(unit.stored(), (PluginData{oneRule, {{0, oneRule[0]}}}));
    unit.setFullState(unit.fullState());
    queue.drain();
    EXPECT_EQ(shownNames(), (Names{"one", "one"}));
    EXPECT_TRUE(controller->model()->rules()[0].off);
    const EventLogEntryVariants note = EventLogEntryVariants::MIDI{MIDIMessage{0x90, 60, 1}};
    EXPECT_EQ(controller->why(note).at(0).verdict, "switched off");
}

TEST_F(ControllerTest, EditsMadeBeforeTheUnitExistsAreLost) {
    controller->viewDidLoad();
    controller->onRulesChanged(oneRule);
    controller->onInstantMessageClick(noteOn(0, 1, 1));
    create();
    EXPECT_EQ(controller->audioUnit()->processor->rules(), std::vector<Rule>{});
    EXPECT_EQ(controller->audioUnit()->processor->pendingInstantMessages(), 0U);
    EXPECT_EQ(shownNames(), Names{});
}

TEST_F(ControllerTest, RulesThatCannotBeCompiledAreRejectedAndTheInstalledOnesStay) {
    create();
    controller->onRulesChanged(oneRule);
    EXPECT_THROW(controller->onRulesChanged({rule(onLoad(), send(noteOn(0, 1, 1), -1))}), FatalError);
    EXPECT_EQ(controller->audioUnit()->processor->rules(), oneRule);
}

TEST_F(ControllerTest, AMessageSentByHandWaitsForTheFirstCycle) {
    auto& unit = create();
    std::vector<Bytes> sent;
    unit.MIDIOutputEventBlock =
        WithoutDeadline([&sent](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t> bytes) {
            sent.push_back(copyOf(bytes));
            return noErr;
        });
    controller->onInstantMessageClick(noteOn(0, 1, 2));
    EXPECT_EQ(unit.processor->pendingInstantMessages(), 1U);
    render(0);
    EXPECT_EQ(sent, (std::vector<Bytes>{{0x90, 1, 2}}));
}

TEST_F(ControllerTest, SendingAMessageThatNeedsItsTriggerIsFatal) {
    create();
    EXPECT_THROW(controller->onInstantMessageClick(protocol(StatusV2::CC, triggerChannel, byte(1), byte(1))),
                 FatalError);
}

TEST_F(ControllerTest, SaysWhyForTheUnitsRules) {
    const EventLogEntryVariants note = EventLogEntryVariants::MIDI{MIDIMessage{0x90, 60, 1}};
    EXPECT_TRUE(controller->why(note).empty());
    create().processor->setRules(oneRule);
    ASSERT_EQ(controller->why(note).size(), 1U);
    EXPECT_EQ(controller->why(note)[0].text(), "fired: sent 91 02 03 at once");
}

TEST_F(ControllerTest, SaysWhatTheLoggedEventsWouldDoNowAtTheUnitsRate) {
    EXPECT_TRUE(controller->whatNow().entries.empty());
    auto& unit = create();
    unit.processor->sampleRate = 2000;
    controller->viewDidLoad();
    auto& model = *controller->model();
    model.appendToInLog({{7, EventLogEntryVariants::MIDI{MIDIMessage{0x90, 60, 1}}}});
    model.setRules(elementsFrom({rule(onNoteOn(), send(noteOn(1, 2, 3), 10))}));
    const auto log = controller->whatNow();
    ASSERT_EQ(log.entries.size(), 1U);
    EXPECT_EQ(markedText(log.entries[0]), "[27] 91 02 03, would be sent now");
}

TEST_F(ControllerTest, AnEventCountsForTheRulesThatItMetThoughItIsShownAfterAnEdit) {
    auto& unit = create();
    unit.MIDIOutputEventBlock = [](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t>) {
        return noErr;
    };
    controller->viewDidLoad();
    render(0, {{0x90, 60, 100}});
    const std::vector<Rule> answer{rule(onNoteOn(), send(noteOn(1, 2, 3)))};
    controller->onRulesChanged(answer);
    controller->model()->setRules(elementsFrom(answer));
    queue.drain();
    EXPECT_EQ(markedText(controller->whatNow().entries.at(1)), "[0] 91 02 03, would be sent now");
}

TEST_F(ControllerTest, BothLogsReachTheModelInOrderWhenTheMainQueueIsDrained) {
    auto& unit = create();
    unit.MIDIOutputEventBlock = [](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t>) {
        return noErr;
    };
    controller->viewDidLoad();
    render(0, {{0x90, 60, 100}, {0x80, 60, 0}});
    EXPECT_TRUE(controller->model()->inLog().empty());
    queue.drain();
    ASSERT_EQ(controller->model()->inLog().size(), 2U);
    EXPECT_EQ(text(controller->model()->inLog()[0]), "[0] 90 3c 64");
    EXPECT_EQ(text(controller->model()->inLog()[1]), "[0] 80 3c 00");
    EXPECT_EQ(controller->model()->outLog().size(), 2U);
}

TEST_F(ControllerTest, WhatIsReportedToTheUserIsAnAlertOnTheMainThread) {
    std::thread([this] { controller->tellUser("lost"); }).join();
    EXPECT_EQ(controller->model()->alertErrorMessage(), std::nullopt);
    controller->drain();
    EXPECT_EQ(controller->model()->alertErrorMessage(), "lost");
}

TEST_F(ControllerTest, AReporterThatOutlivesTheControllerDoesNothing) {
    const auto tell = controller->userTeller();
    const std::weak_ptr model = controller->model();
    tell("lost");
    controller.reset();
    tell("lost again");
    queue.drain();
    EXPECT_TRUE(model.expired());
}

TEST_F(ControllerTest, AMainThreadThatSleptThroughAFloodShowsTheNewest100) {
    create();
    controller->viewDidLoad();
    for (SampleTime time = 0; time < 10000; ++time) {
        render(time, {{0xF8}});
    }
    queue.drain();
    const auto& log = controller->model()->inLog();
    ASSERT_EQ(log.size(), 100U);
    EXPECT_EQ(log[0].timestamp, 9900);
    EXPECT_EQ(log[99].timestamp, 9999);
}

TEST_F(ControllerTest, ASecondUnitIsKeptButNotConnectedAgain) {
    controller->viewDidLoad();
    auto& first = create();
    const auto keep = controller->audioUnit();
    create();
    EXPECT_NE(controller->audioUnit().get(), &first);
    controller->audioUnit()->setFullState(controller->audioUnit()->fullState());
    EXPECT_EQ(queue.drain(), 0U);
}

TEST_F(ControllerTest, RulesThatTheEditorCannotShowRunAndStayUntouched) {
    auto& unit = create();
    const std::vector rules{
        oneRule[0],
        rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd")};
    unit.processor->setRules(rules);
    controller->viewDidLoad();
    EXPECT_TRUE(controller->model()->rules().empty());
    EXPECT_EQ(controller->model()->whyNotEditable(),
              "Rule 2 \"odd\" cannot be edited: its pressure is copied from the trigger. The rules run as "
              "they are and stay untouched.");
    EXPECT_EQ(controller->model()->rulesNotShown(), PluginData{rules});
    EXPECT_EQ(unit.processor->rules(), rules);
}

TEST_F(ControllerTest, AMessageThatTheEditorCannotHoldIsReportedWhenItIsLoadedAndStaysAsItIs) {
    auto& unit = create();
    const std::vector rules{
        rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), "old")};
    unit.processor->setRules(rules);
    controller->viewDidLoad();
    ASSERT_TRUE(noticeBeforeEditing(elementsFrom(rules)));
    EXPECT_EQ(controller->model()->alertErrorMessage(), noticeBeforeEditing(elementsFrom(rules)));
    ASSERT_EQ(controller->model()->rules().size(), 1U);
    EXPECT_EQ(ruleFromElement(controller->model()->rules()[0]), rules[0]);
}

TEST_F(ControllerTest, AReloadThatIsStillPostedOutlivesTheControllersOwner) {
    auto& unit = create();
    const auto keep = controller->audioUnit();
    controller->viewDidLoad();
    unit.setFullState(unit.fullState());
    controller.reset();
    EXPECT_EQ(queue.drain(), 1U);
}

TEST_F(ControllerTest, AUnitThatOutlivesItsControllerGoesOn) {
    create();
    const auto unit = controller->audioUnit();
    controller->viewDidLoad();
    controller.reset();
    unit->setFullState(unit->fullState());
    RenderEventList events(1);
    ASSERT_TRUE(events.tryPushMIDI(0, Bytes{0xF8}));
    EXPECT_EQ(unit->internalRenderBlock()(AudioTimeStamp{0}, 512, events.head()), noErr);
    EXPECT_EQ(queue.drain(), 0U);
}

}  // namespace
}  // namespace quillo
