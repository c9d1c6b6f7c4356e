// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>

#include "hosts/lv2/LV2InstanceAccess.hpp"
#include "hosts/lv2/LV2TestHost.hpp"
#include "platform/FatalError.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

const Bytes middleC{0x90, 60, 100};

TEST(LV2Lifecycle, ABlockBeforeActivationSendsNothing) {
    LV2TestHost host;
    host.run(64, middleC);
    EXPECT_EQ(host.take(), Messages{});
    host.activate();
    host.run(64, middleC);
    EXPECT_EQ(host.take(), (Messages{{64, middleC}}));
}

TEST(LV2Lifecycle, TheOnLoadRulesFireOnceHoweverOftenItIsActivated) {
    LV2TestHost host;
    host.loadRules({rule(onLoad(), send(controlChange(0, 7, 1)))});
    for (int i = 0; i < 3; ++i) {
        host.activate();
        host.run(64);
        host.deactivate();
    }
    EXPECT_EQ(host.take(), (Messages{{0, {0xB0, 7, 1}}}));
}

TEST(LV2Lifecycle, WhatIsDelayedStillLeavesAfterItWasInactive) {
    LV2TestHost host;
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 61, 0), 10))});
    host.activate();
    host.run(64, middleC);
    host.deactivate();
    host.activate();
    host.run(1024);
    EXPECT_EQ(host.take(), (Messages{{0, middleC}, {64, {0x80, 60, 64}}, {480, {0x90, 61, 0}}}));
}

TEST(LV2Lifecycle, NotesThatSoundWhenItIsDeactivatedEndInItsNextBlock) {
    LV2TestHost host;
    host.activate();
    host.run(64, LV2Sequence().addMIDI(3, middleC).addMIDI(4, {0x91, 40, 1}).addMIDI(9, {0xB1, 64, 127}));
    host.run(64, Bytes{0x80, 60, 0});
    static_cast<void>(host.take());
    host.deactivate();
    host.activate();
    host.run(64, LV2Sequence().addMIDI(0, middleC));
    EXPECT_EQ(host.take(), (Messages{{128, {0x81, 40, 64}}, {128, {0xB1, 64, 0}}, {128, middleC}}));
}

TEST(LV2Lifecycle, WhatTheHostHasNoRoomForEndsInTheBlockAfter) {
    LV2TestHost host;
    host.activate();
    host.run(64, LV2Sequence().addMIDI(0, {0x90, 1, 1}).addMIDI(0, {0x90, 2, 1}).addMIDI(0, {0x90, 3, 1}));
    static_cast<void>(host.take());
    host.deactivate();
    host.activate();
    host.capacity = sizeof(LV2_Atom_Sequence) + 2 * 24;
    host.run(64);
    host.run(64);
    EXPECT_EQ(host.take(), (Messages{{64, {0x80, 1, 64}}, {64, {0x80, 2, 64}}, {128, {0x80, 3, 64}}}));
}

TEST(LV2Lifecycle, APanicOfTheEditorEndsNotesInTheNextBlockAndIsAnswered) {
    LV2TestHost host;
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 61, 1), 100))});
    host.activate();
    host.run(64, middleC);
    static_cast<void>(host.take());
    host.unit().panic();
    host.run(8192);
    EXPECT_EQ(host.take(), (Messages{{64, {0x80, 60, 64}},
                                     {64, {0xB0, 64, 0}},
                                     {64, {0xB0, 66, 0}},
                                     {64, {0xB0, 67, 0}},
                                     {64, {0xB0, 123, 0}},
                                     {64, {0xB0, 120, 0}}}));
    host.unit().drain();
    EXPECT_EQ(host.unit().model()->panicAnswer(), "Stopped 1 note, cancelled 1 waiting message");
}

TEST(LV2Lifecycle, DelaysAreInMillisecondsAtTheHostsRate) {
    LV2TestHost host(lv2Plain, 96000.0);
    host.loadRules({rule(onNoteOn(), send(noteOn(0, 61, 0), 10))});
    host.activate();
    host.run(1024, middleC);
    EXPECT_EQ(host.take(), (Messages{{0, middleC}, {960, {0x90, 61, 0}}}));
}

TEST(LV2Lifecycle, InstancesOfOneProcessKnowNothingOfEachOther) {
    std::vector<std::unique_ptr<LV2TestHost>> hosts;
    for (std::uint8_t i = 0; i < 5; ++i) {
        hosts.push_back(std::make_unique<LV2TestHost>(i % 2 == 0 ? lv2Plain : lv2Stereo));
        hosts.back()->loadRules({rule(onNoteOn(), send(noteOn(i, 61, 5), i))});
        hosts.back()->activate();
    }
    for (auto& host : hosts) {
        host->run(512, middleC);
    }
    hosts.erase(hosts.begin() + 1);
    for (auto& host : hosts) {
        host->run(512);
    }
    for (std::size_t i = 0; i < hosts.size(); ++i) {
        const auto number = static_cast<std::uint8_t>(i == 0 ? 0 : i + 1);
        const Messages echo{{number * 48, {static_cast<std::uint8_t>(0x90 | number), 61, 5}}, {0, middleC}};
        const auto sent = hosts[i]->take();
        EXPECT_TRUE(std::ranges::is_permutation(sent, echo)) << testing::PrintToString(sent);
    }
}

TEST(LV2Lifecycle, TheHandleOfAnotherPluginOrVersionIsKnown) {
    LV2TestHost host;
    const auto* ours = LV2InstanceAccess::of(host.handle());
    ASSERT_NE(ours, nullptr);
    EXPECT_TRUE(ours->isOfThisVersion());
    auto other = LV2InstanceAccess{*ours};
    other.number += 1;
    EXPECT_EQ(LV2InstanceAccess::of(&other), &other);
    EXPECT_FALSE(other.isOfThisVersion());
    other.magic += 1;
    EXPECT_EQ(LV2InstanceAccess::of(&other), nullptr);
    EXPECT_EQ(LV2InstanceAccess::of(nullptr), nullptr);
}

/// The editor is in another binary than the rules' compiler, and shows why rules are refused.
TEST(LV2Lifecycle, RulesThatAreRefusedThrowIntoTheEditorsBinary) {
    LV2TestHost host;
    const auto endless = rule(onNoteOn(), send(noteOn(0, 61, 5), std::numeric_limits<std::int64_t>::max()));
    EXPECT_THROW(host.unit().onRulesChanged({endless}), FatalError);
}

}  // namespace
}  // namespace quillo
