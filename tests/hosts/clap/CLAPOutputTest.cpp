// SPDX-License-Identifier: GPL-3.0-or-later
// Hosts that have no room for what the plug-in sends.
#include <gtest/gtest.h>

#include "hosts/clap/CLAPTestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

constexpr auto endless = std::numeric_limits<std::size_t>::max();

class CLAPOutput : public testing::Test {
protected:
    CLAPOutput() { host.start(); }

    /// A block of 64 frames with programs at these frames, numbered from `first`.
    clap_process_status programs(const std::vector<std::uint32_t>& times, std::uint8_t first = 1) {
        CLAPEvents events;
        for (const auto time : times) {
            events.addMIDI(time, {0xC0, first++});
        }
        return host.process(64, events);
    }

    CLAPTestHost host;
};

TEST_F(CLAPOutput, LeavesInTheOrderOfTime) {
    host.loadRules({rule(onNoteOn(exactly(60)), send(controlChange(0, 7, 1), 1))});
    CLAPEvents events;
    events.addMIDI(2, {0x90, 60, 1});
    events.addMIDI(9, {0x90, 61, 1});
    host.process(64, events);
    EXPECT_EQ(host.take(), (Messages{{2, {0x90, 60, 1}}, {9, {0x90, 61, 1}}, {50, {0xB0, 7, 1}}}));
}

TEST_F(CLAPOutput, ThatTheHostRefusesComesFirstInTheNextBlock) {
    host.room = 1;
    programs({3, 5, 9});
    EXPECT_EQ(host.take(), (Messages{{3, {0xC0, 1}}}));
    host.room = endless;
    programs({7}, 4);
    EXPECT_EQ(host.take(), (Messages{{64, {0xC0, 2}}, {64, {0xC0, 3}}, {71, {0xC0, 4}}}));
    programs({});
    EXPECT_EQ(host.take(), Messages{});
}

TEST_F(CLAPOutput, WaitsThroughAsManyBlocksAsItTakesAndNothingOvertakesIt) {
    host.room = 0;
    programs({0, 1, 2});
    for (std::uint8_t i = 1; i <= 3; ++i) {
        host.room = 1;
        programs({5}, 100);
        const auto start = 64 * i;
        const Messages expected{{start, {0xC0, i}}};
        EXPECT_EQ(host.take(), expected);
    }
    host.room = 1;
    programs({5}, 101);
    // The last of them had left when this one came, and then there was no room for it either.
    EXPECT_EQ(host.take(), (Messages{{256, {0xC0, 100}}}));
}

TEST_F(CLAPOutput, IsRefusedToTheUnitWhileEarlierOutputWaits) {
    host.room = 0;
    programs({0});
    programs({1}, 2);
    host.room = endless;
    programs({2}, 3);
    EXPECT_EQ(host.take(), (Messages{{128, {0xC0, 1}}, {130, {0xC0, 3}}}));
}

TEST_F(CLAPOutput, ThatIsDelayedStaysWithTheUnitWhileEarlierOutputWaits) {
    host.loadRules(
        {rule(onProgramChange(any, any, PassThroughV2::EatMatching), send(controlChange(0, 7, 1), 10))});
    host.process(64, Bytes{0xC0, 1});
    host.room = 0;
    host.process(64, Bytes{0x90, 60, 1});
    host.process(128);
    host.room = endless;
    host.process(256);
    EXPECT_EQ(host.take(), (Messages{{256, {0x90, 60, 1}}, {480, {0xB0, 7, 1}}}));
}

TEST_F(CLAPOutput, KeepsThePluginAwakeWhileItWaits) {
    host.room = 0;
    EXPECT_EQ(programs({0}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(programs({}), CLAP_PROCESS_CONTINUE);
    host.room = endless;
    EXPECT_EQ(programs({}), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPOutput, OfSystemExclusiveWaitsWhole) {
    host.loadRules({rule(onProgramChange(), send(systemExclusive(std::vector<std::uint8_t>(2000, 0x11))))});
    host.room = 0;
    programs({3});
    host.room = endless;
    programs({});
    Bytes whole(2002, 0x11);
    whole.front() = 0xF0;
    whole.back() = 0xF7;
    EXPECT_EQ(host.take(), (Messages{{64, whole}, {64, {0xC0, 1}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveIsLostToAHostThatTakesOnlyShortMessages) {
    host.loadRules({rule(onProgramChange(exactly(1)), send(systemExclusive({1}))),
                    rule(onProgramChange(exactly(1)), send(systemExclusive({2})))});
    host.takesSystemExclusive = false;
    EXPECT_EQ(programs({3, 5}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.take(), Messages{});
    EXPECT_EQ(programs({7}, 3), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (Messages{{64, {0xC0, 1}}, {64, {0xC0, 2}}, {71, {0xC0, 3}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveAloneIsOfferedOnceMoreAndThenLost) {
    host.loadRules(
        {rule(onProgramChange(exactly(1), any, PassThroughV2::EatMatching), send(systemExclusive({})))});
    host.takesSystemExclusive = false;
    EXPECT_EQ(programs({3}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(programs({7}, 2), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (Messages{{71, {0xC0, 2}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveIsNotLostToAHostThatHasNoRoomForAnything) {
    host.loadRules({rule(onProgramChange(exactly(1)), send(systemExclusive({})))});
    host.room = 0;
    programs({3});
    programs({});
    host.room = endless;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{128, {0xF0, 0xF7}}, {128, {0xC0, 1}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveIsNotLostBehindOtherMessagesOfTheBlock) {
    host.loadRules({rule(onProgramChange(exactly(2)), send(systemExclusive({})))});
    host.room = 0;
    programs({3, 5});
    host.room = endless;
    host.takesSystemExclusive = false;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{64, {0xC0, 1}}}));
    host.takesSystemExclusive = true;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{128, {0xF0, 0xF7}}, {128, {0xC0, 2}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveWithoutABodyIsSystemExclusive) {
    host.loadRules({rule(onProgramChange(any, any, PassThroughV2::EatMatching), send(systemExclusive({})))});
    programs({3});
    EXPECT_EQ(host.take(), (Messages{{3, {0xF0, 0xF7}}}));
}

TEST_F(CLAPOutput, SurvivesAResetAndADeactivation) {
    host.room = 0;
    programs({0, 1});
    host.plugin->reset(host.plugin);
    host.room = 1;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{64, {0xC0, 1}}}));
    host.stop();
    host.start();
    host.room = endless;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{128, {0xC0, 2}}}));
}

TEST_F(CLAPOutput, OfABlockWithoutAnOutputListWaits) {
    CLAPEvents events;
    events.addMIDI(3, {0xC0, 1});
    clap_process_t process{};
    process.frames_count = 64;
    process.in_events = events.list();
    EXPECT_EQ(host.plugin->process(host.plugin, &process), CLAP_PROCESS_CONTINUE);
    programs({});
    EXPECT_EQ(host.take(), (Messages{{0, {0xC0, 1}}}));
}

TEST_F(CLAPOutput, OfSystemExclusiveOutlivesBlocksWithoutAnOutputList) {
    host.loadRules({rule(onProgramChange(any, any, PassThroughV2::EatMatching), send(systemExclusive({})))});
    host.room = 0;
    programs({3});
    clap_process_t process{};
    process.frames_count = 64;
    host.plugin->process(host.plugin, &process);
    host.room = endless;
    programs({});
    EXPECT_EQ(host.take(), (Messages{{64, {0xF0, 0xF7}}}));
}

TEST_F(CLAPOutput, OfAnyNumberOfMessagesIsTakenAndOfThoseThatWaitSoManyAreKept) {
    CLAPEvents events;
    for (int i = 0; i < 20000; ++i) {
        events.addMIDI(0, {0xC0, 1});
    }
    EXPECT_NE(host.process(64, events), CLAP_PROCESS_ERROR);
    EXPECT_EQ(host.take().size(), 20000U);
    host.room = 0;
    EXPECT_NE(host.process(64, events), CLAP_PROCESS_ERROR);
    host.room = endless;
    programs({});
    EXPECT_EQ(host.take().size(), 16384U);
    programs({1}, 9);
    EXPECT_EQ(host.take(), (Messages{{193, {0xC0, 9}}}));
}

}  // namespace
}  // namespace quillo
