// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "hosts/clap/CLAPTestHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

class CLAPSleep : public testing::Test {
protected:
    CLAPSleep() { host.start(); }

    CLAPTestHost host;
};

TEST_F(CLAPSleep, IsAllowedWhenNothingWaits) {
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.process(64, Bytes{0xC0, 60}), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPSleep, IsNotAllowedBeforeWhatSoundsHasEnded) {
    EXPECT_EQ(host.process(64, Bytes{0x90, 60, 1}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(64, Bytes{0xB5, 66, 127}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(64, Bytes{0x80, 60, 1}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(64, Bytes{0xB5, 66, 0}), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPSleep, IsNotAllowedBeforeADelayedOutputHasLeft) {
    host.loadRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(0, 7, 5), 2))});
    EXPECT_EQ(host.process(64, Bytes{0x90, 60, 1}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(32), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(1), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (std::vector<ScriptMessage>{{96, {0xB0, 7, 5}}}));
}

TEST_F(CLAPSleep, IsNotAllowedBeforeWhatLoadingSendsHasLeft) {
    host.loadRules({rule(onLoad(), send(controlChange(0, 7, 5), 1))});
    EXPECT_EQ(host.process(48), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(host.process(1), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPSleep, IsNotAllowedWhileARuleWaitsForTheTransport) {
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Stop), send(noteOn(0, 61, 5)))});
    EXPECT_EQ(host.process(64), CLAP_PROCESS_CONTINUE);
    host.loadRules({});
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
}

TEST_F(CLAPSleep, EndsWhenRulesAreLoadedThatWaitForTheTransport) {
    host.process(64);
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 61, 5)))});
    EXPECT_EQ(host.processRequests, 0);
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Start), send(noteOn(0, 61, 5)))});
    EXPECT_EQ(host.processRequests, 1);
    host.process(64);
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Stop), send(noteOn(0, 61, 5)))});
    EXPECT_EQ(host.processRequests, 1);
}

TEST_F(CLAPSleep, IsNotDisturbedWhileThePluginIsNotActive) {
    host.process(64);
    host.stop();
    host.loadRules({rule(onHost(HostTransportTriggerVariantsV2::Start), send(noteOn(0, 61, 5)))});
    EXPECT_EQ(host.processRequests, 0);
    host.start();
    EXPECT_EQ(host.processRequests, 0);
}

TEST_F(CLAPSleep, HasNoPartInTheDelays) {
    host.loadRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 2))});
    host.process(64);
    host.steadyTime += 1000000;
    host.process(64, Bytes{0x90, 60, 1});
    host.process(64);
    EXPECT_EQ(host.take(), (std::vector<ScriptMessage>{{64 + 96, {0x90, 61, 5}}}));
}

/// A host that takes a plug-in that may sleep out of its processing, as one that stops listening does.
class CLAPSleepBehindAStop : public CLAPSleep {
protected:
    CLAPSleepBehindAStop() { host.stopsWhenAsleep = true; }
};

TEST_F(CLAPSleepBehindAStop, CutsNothingThatSounds) {
    for (const auto& message : {Bytes{0x90, 60, 100}, Bytes{0x90, 64, 100}, Bytes{0xB0, 64, 127}}) {
        host.process(64, message);
    }
    host.take();
    host.process(64);
    host.plugin->on_main_thread(host.plugin);
    EXPECT_EQ(host.processRequests, 0);
    host.process(64, Bytes{0x90, 72, 100});
    EXPECT_EQ(host.take(), (std::vector<ScriptMessage>{{256, {0x90, 72, 100}}}));
}

TEST_F(CLAPSleepBehindAStop, IsNotDisturbedWhileThereIsNothingToDo) {
    EXPECT_EQ(host.process(64, Bytes{0xC0, 60}), CLAP_PROCESS_SLEEP);
    host.plugin->on_main_thread(host.plugin);
    EXPECT_EQ(host.processRequests, 0);
    host.plugin->reset(host.plugin);
    host.plugin->on_main_thread(host.plugin);
    EXPECT_EQ(host.processRequests, 0);
}

TEST_F(CLAPSleepBehindAStop, IsNoStopOfThoseThatEndWhatSounds) {
    host.process(64);
    host.process(64, Bytes{0x90, 60, 100});
    host.stop();
    host.start();
    host.take();
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (std::vector<ScriptMessage>{{128, {0x80, 60, 64}}}));
}

}  // namespace
}  // namespace quillo
