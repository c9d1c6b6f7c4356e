// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TriggerLearner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Transport = HostTransportTriggerVariantsV2;

class TriggerLearnerTest : public testing::Test {
protected:
    void hear(const MIDIMessage& message) { learner.hear(EventLogEntryVariants::MIDI{message}, now); }
    void hear(Transport change) { learner.hear(EventLogEntryVariants::Host{change}, now); }

    /// A control of channel 1 goes from one value to another, a step each 10 ms.
    void move(std::uint8_t controller, int from, int to) {
        for (int value = from; value != to; value += from < to ? 1 : -1) {
            hear({0xB0, controller, static_cast<std::uint8_t>(value)});
            now += 10ms;
        }
        hear({0xB0, controller, static_cast<std::uint8_t>(to)});
    }

    /// What is offered, each as its words and its remark.
    std::vector<std::string> offered() const {
        std::vector<std::string> texts;
        for (const auto& offer : learner.offers()) {
            texts.push_back(offer.words + " | " + offer.remark);
        }
        return texts;
    }
    std::string first() const { return offered().front(); }

    TriggerLearner learner;
    TriggerLearner::Time now{1h};
};

TEST_F(TriggerLearnerTest, OffersNothingBeforeAnythingCameIn) {
    EXPECT_THAT(offered(), IsEmpty());
}

TEST_F(TriggerLearnerTest, OffersAControlWithAndWithoutItsValueBeforeANote) {
    hear({0x90, 60, 100});
    hear({0x80, 60, 0});
    hear({0xB0, 64, 0});
    hear({0xB0, 64, 127});
    EXPECT_THAT(offered(), ElementsAre("CC 64 : Sustain, channel 1 | most moved, 0 – 127",
                                       "CC 64 : Sustain, value 127, channel 1 | last value",
                                       "CC 64 : Sustain, value 0, channel 1 | value before",
                                       "Note On C3, channel 1 | once",
                                       "Note On and Note Off C3, channel 1 | makes both rules"));
}

TEST_F(TriggerLearnerTest, OffersFillEveryFieldOfTheTrigger) {
    hear({0xB1, 7, 9});
    hear({0x92, 60, 100});
    const RuleTriggerEntry anyValue{
        .type = TriggerEntryType::ControlChange, .channel = exactly(1), .controller = 7};
    auto lastValue = anyValue;
    lastValue.controllerValue = exactly(9);
    const RuleTriggerEntry on{.type = TriggerEntryType::NoteOn, .channel = exactly(2), .note = exactly(60)};
    auto off = on;
    off.type = TriggerEntryType::NoteOff;
    std::vector<std::vector<RuleTriggerEntry>> triggers;
    for (const auto& offer : learner.offers()) {
        triggers.push_back(offer.triggers);
    }
    EXPECT_THAT(triggers, testing::UnorderedElementsAre(ElementsAre(anyValue), ElementsAre(lastValue),
                                                        ElementsAre(on), ElementsAre(on, off)));
}

TEST_F(TriggerLearnerTest, AFaderComesBeforeTheNoteThatItsTouchSends) {
    hear({0x90, 104, 127});
    now += 50ms;
    hear({0xB0, 20, 64});
    EXPECT_THAT(first(), StartsWith("CC 20")) << "with its first message";
    move(20, 64, 66);
    EXPECT_THAT(first(), StartsWith("CC 20")) << "however little it moves";
    now += 50ms;
    hear({0x90, 104, 0});
    EXPECT_THAT(first(), StartsWith("CC 20")) << "when it is let go";
    for (int touch = 0; touch < 5; ++touch) {
        now += 1s;
        hear({0x90, 104, 127});
        hear({0x90, 104, 0});
    }
    EXPECT_THAT(first(), StartsWith("CC 20")) << "touched again and again, and long after it was moved";
}

TEST_F(TriggerLearnerTest, WhatMovedMostComesFirst) {
    move(1, 60, 64);
    move(2, 0, 40);
    EXPECT_THAT(offered(), ElementsAre("CC 2 : Breath, channel 1 | most moved, 0 – 40",
                                       "CC 2 : Breath, value 40, channel 1 | last value",
                                       "CC 1 : Modulation, channel 1 | moved, 60 – 64",
                                       "CC 1 : Modulation, value 64, channel 1 | last value"));
}

TEST_F(TriggerLearnerTest, TheRightControlWinsAfterTheWrongOneWasTried) {
    move(1, 0, 127);
    move(1, 127, 0);
    now += 10s;
    move(2, 10, 50);
    EXPECT_THAT(first(), StartsWith("CC 2 "));
    hear({0x90, 60, 1});
    EXPECT_THAT(first(), StartsWith("CC 2 ")) << "a note counts less than a way that was just gone";
    now += 10s;
    hear({0x90, 60, 1});
    EXPECT_THAT(first(), StartsWith("Note On C3"));
}

TEST_F(TriggerLearnerTest, TheOrderDoesNotChangeByItself) {
    move(1, 0, 100);
    now += 3s;
    move(2, 0, 50);
    const auto before = offered();
    now += 1min;
    EXPECT_EQ(offered(), before);
}

TEST_F(TriggerLearnerTest, AWornControlThatTremblesDoesNotMove) {
    for (int time = 0; time < 1000; ++time) {
        hear({0xB0, 7, static_cast<std::uint8_t>(63 + time % 2)});
        now += 10ms;
    }
    hear({0x90, 60, 1});
    EXPECT_THAT(first(), StartsWith("Note On C3"));
    EXPECT_THAT(offered()[2], testing::EndsWith("| 1000 times"));
}

TEST_F(TriggerLearnerTest, AControlThatGoesByOneMoves) {
    hear({0x90, 60, 1});
    hear({0x80, 60, 1});
    now += 10ms;
    move(7, 0, 127);
    EXPECT_EQ(first(), "CC 7 : Volume, channel 1 | most moved, 0 – 127");
}

TEST_F(TriggerLearnerTest, ASwitchIsOfferedWithBothItsValuesAndAFaderWithItsLast) {
    hear({0xB0, 64, 127});
    EXPECT_EQ(offered().size(), 2U);
    hear({0xB0, 64, 0});
    EXPECT_EQ(offered()[2], "CC 64 : Sustain, value 127, channel 1 | value before");
    hear({0xB0, 64, 127});
    EXPECT_EQ(offered()[2], "CC 64 : Sustain, value 0, channel 1 | value before");
    hear({0xB0, 64, 50});
    EXPECT_THAT(offered(), ElementsAre("CC 64 : Sustain, channel 1 | most moved, 0 – 127",
                                       "CC 64 : Sustain, value 50, channel 1 | last value"));
}

TEST_F(TriggerLearnerTest, CountsHowOftenAKeyWasStruck) {
    hear({0x90, 61, 1});
    hear({0x80, 61, 1});
    hear({0x90, 61, 1});
    EXPECT_EQ(first(), "Note On C♯3, channel 1 | twice");
    hear({0x90, 61, 1});
    EXPECT_EQ(first(), "Note On C♯3, channel 1 | 3 times");
}

TEST_F(TriggerLearnerTest, AKeyStruckLastComesBeforeTheOthers) {
    hear({0x90, 60, 1});
    now += 100ms;
    hear({0x90, 62, 1});
    EXPECT_THAT(first(), StartsWith("Note On D3"));
}

TEST_F(TriggerLearnerTest, ANoteThatEndsByVelocityZeroIsNoPairAsNoNoteOffComes) {
    hear({0x90, 60, 1});
    hear({0x90, 60, 0});
    EXPECT_THAT(offered(), ElementsAre("Note On C3, channel 1 | once"));
}

TEST_F(TriggerLearnerTest, AKeyThatIsOnlyLetGoIsANoteOff) {
    hear({0x83, 60, 1});
    EXPECT_THAT(offered(), ElementsAre("Note Off C3, channel 4 | once"));
}

TEST_F(TriggerLearnerTest, OffersProgramsCommandsAndTheHostsTransport) {
    for (const auto& [message, words] : std::initializer_list<std::pair<MIDIMessage, const char*>>{
             {{0xC0, 48}, "Program Change 48, channel 1 | once"},
             {{0xFA}, "MIDI Transport Start | once"},
             {{0xFB}, "MIDI Transport Continue | once"},
             {{0xFC}, "MIDI Transport Stop | once"}}) {
        learner = {};
        hear(message);
        EXPECT_THAT(offered(), ElementsAre(words));
    }
    learner = {};
    hear(Transport::Continue);
    EXPECT_THAT(offered(), ElementsAre("AU Host Transport Continue | once"));
}

TEST_F(TriggerLearnerTest, PassesOverWhatNoRuleCanWaitFor) {
    hear({0xF8});
    hear({0xE0, 0, 64});
    hear({0xD0, 1});
    EXPECT_THAT(offered(), IsEmpty());
}

TEST_F(TriggerLearnerTest, WhatIsShownKeepsItsOrderAndWhatIsNewComesBehind) {
    hear({0x90, 60, 1});
    const auto shown = learner.offers();
    now += 1s;
    hear({0x90, 60, 1});
    move(2, 0, 100);
    const auto offers = inShownOrder(shown, learner.offers());
    ASSERT_EQ(offers.size(), 4U);
    EXPECT_EQ(offers[0].words, "Note On C3, channel 1");
    EXPECT_EQ(offers[0].remark, "twice");
    EXPECT_EQ(offers[1].key, shown[1].key);
    EXPECT_THAT(offers[2].words, StartsWith("CC 2"));
}

}  // namespace
}  // namespace quillo
