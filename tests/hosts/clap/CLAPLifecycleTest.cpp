// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "hosts/clap/CLAPTestHost.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

std::vector<Rule> echo(std::uint8_t note, std::int64_t milliseconds) {
    return {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, note, 5), milliseconds))};
}

TEST(CLAPLifecycle, SeveralInstancesHaveNothingInCommon) {
    std::vector<std::unique_ptr<CLAPTestHost>> hosts;
    for (std::uint8_t note = 0; note < 5; ++note) {
        hosts.push_back(std::make_unique<CLAPTestHost>());
        hosts.back()->loadRules(echo(note, note));
        hosts.back()->start();
    }
    hosts.erase(hosts.begin() + 2);
    for (const auto& host : hosts) {
        host->process(300, Bytes{0x90, 60, 1});
    }
    for (const auto note : Bytes{0, 1, 3, 4}) {
        const auto& host = hosts[note < 2 ? note : note - 1U];
        EXPECT_EQ(host->take(), (Messages{{note * 48, {0x90, note, 5}}}));
    }
}

TEST(CLAPLifecycle, TheUnitIsLoadedOnceHoweverOftenItIsActivated) {
    CLAPTestHost host;
    host.loadRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    for (int i = 0; i < 3; ++i) {
        host.start();
        host.process(64);
        host.stop();
    }
    EXPECT_EQ(host.take(), (Messages{{0, {0xB0, 7, 5}}}));
}

TEST(CLAPLifecycle, AResetForgetsNothingThatIsDelayed) {
    CLAPTestHost host;
    host.loadRules(echo(61, 2));
    host.start();
    host.process(64, Bytes{0x90, 60, 1});
    host.plugin->reset(host.plugin);
    host.process(64);
    EXPECT_EQ(host.take(), (Messages{{96, {0x90, 61, 5}}}));
}

TEST(CLAPLifecycle, WhatIsDelayedOutlivesADeactivation) {
    CLAPTestHost host;
    host.loadRules(echo(61, 2));
    host.start();
    host.process(64, Bytes{0x90, 60, 1});
    host.stop();
    host.start();
    host.process(64);
    EXPECT_EQ(host.take(), (Messages{{96, {0x90, 61, 5}}}));
}

TEST(CLAPLifecycle, NotesThatSoundWhenTheHostStopsListeningEndInTheNextBlock) {
    const auto stops = std::vector<std::function<void(CLAPTestHost&)>>{
        [](CLAPTestHost& host) {
            host.stop();
            host.start();
        },
        [](CLAPTestHost& host) {
            host.plugin->stop_processing(host.plugin);
            ASSERT_TRUE(host.plugin->start_processing(host.plugin));
        },
        [](CLAPTestHost& host) { host.plugin->reset(host.plugin); },
    };
    for (const auto& stop : stops) {
        CLAPTestHost host;
        host.start();
        host.process(64, Bytes{0x95, 60, 1});
        host.process(64, Bytes{0xB5, 66, 127});
        host.take();
        stop(host);
        EXPECT_EQ(host.process(64, Bytes{0xC0, 70}), CLAP_PROCESS_SLEEP);
        EXPECT_EQ(host.take(), (Messages{{128, {0x85, 60, 64}}, {128, {0xB5, 66, 0}}, {128, {0xC0, 70}}}));
    }
}

TEST(CLAPLifecycle, WhatTheHostHasNoRoomForEndsInTheBlockAfterAndThereIsNoSleepBefore) {
    CLAPTestHost host;
    host.start();
    host.process(32, Bytes{0x90, 1, 1});
    host.process(32, Bytes{0x90, 2, 1});
    host.take();
    host.stop();
    host.start();
    host.room = 1;
    EXPECT_EQ(host.process(64), CLAP_PROCESS_CONTINUE);
    host.room = 1;
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (Messages{{64, {0x80, 1, 64}}, {128, {0x80, 2, 64}}}));
}

TEST(CLAPLifecycle, DelaysAreRightAtEachRate) {
    CLAPTestHost host;
    host.loadRules({rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(0, 7, 5), 10))});
    for (const auto rate : {44100.0, 96000.0, 1000.0, 768000.0}) {
        ASSERT_TRUE(host.plugin->activate(host.plugin, rate, 1, 8192));
        ASSERT_TRUE(host.plugin->start_processing(host.plugin));
        const auto now = host.now;
        host.process(8192, Bytes{0x90, 60, 1});
        host.stop();
        const auto delay = static_cast<SampleTime>(rate / 100);
        EXPECT_EQ(host.take(), (Messages{{now + delay, {0xB0, 7, 5}}})) << rate;
    }
}

TEST(CLAPLifecycle, AnInstanceMayGoWhileItIsActiveAndHasMuchToDo) {
    CLAPTestHost host;
    host.loadRules(echo(61, 1000));
    host.start();
    for (int i = 0; i < 100; ++i) {
        host.process(64, Bytes{0x90, 60, 1});
    }
    EXPECT_EQ(host.process(64), CLAP_PROCESS_CONTINUE);
}

TEST(CLAPLifecycle, TheBinaryCanBeLoadedAndLetGoManyTimes) {
    for (int i = 0; i < 20; ++i) {
        CLAPTestHost host;
        host.start();
        EXPECT_EQ(host.process(64, Bytes{0xC0, 60}), CLAP_PROCESS_SLEEP);
        EXPECT_EQ(host.take(), (Messages{{0, {0xC0, 60}}}));
    }
}

TEST(CLAPLifecycle, AHostWithoutExtensionsIsServed) {
    CLAPTestHost host({.state = false, .timers = false});
    host.start();
    EXPECT_EQ(host.process(64, Bytes{0xC0, 60}), CLAP_PROCESS_SLEEP);
    host.plugin->on_main_thread(host.plugin);
}

}  // namespace
}  // namespace quillo
