// SPDX-License-Identifier: GPL-3.0-or-later
// Whole render cycles, through the unit, in which nothing may be allocated, freed or locked.
#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "realtime/CallCounter.hpp"
#include "realtime/EveryRule.hpp"
#include "realtime/RealTimeHost.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using test::CallCounter;
using test::everyMessage;
using test::everyRule;
using test::noCalls;
using test::RealTimeHost;
using test::systemExclusiveOf;

void pushEveryMessage(RealTimeHost& host) {
    for (const auto& message : everyMessage) {
        host.push(message);
    }
}

/// Takes the transport through start, a change while it moves, and stop, one step a cycle.
void moveTransport(RealTimeHost& host, int cycle) {
    constexpr AUHostTransportStateFlags moving = AUHostTransportStateMoving;
    switch (cycle % 3) {
    case 0: host.moveTransport(moving, 0.0); break;
    case 1: host.moveTransport(moving | AUHostTransportStateRecording, 512.0); break;
    default: host.moveTransport(0, 1024.0); break;
    }
}

void renderCycles(RealTimeHost& host, int count) {
    for (int cycle = 0; cycle < count; ++cycle) {
        moveTransport(host, cycle);
        pushEveryMessage(host);
        ASSERT_EQ(host.render(), noErr) << "cycle " << cycle;
    }
}

void expectEveryKindOfMessage(const RealTimeHost& host) {
    constexpr std::array<std::uint8_t, 5> fixed{0x90, 0xB1, 0xC2, 0xD3, 0xE4};
    constexpr std::array<std::uint8_t, 5> copiedFromTrigger{0x95, 0x85, 0xD5, 0xE5, 0xC5};
    constexpr std::array<std::uint8_t, 5> bankSelectLongAndForwarded{0xB5, 0xF0, 0xFA, 0xFB, 0xFC};
    for (const auto& statuses : {fixed, copiedFromTrigger, bankSelectLongAndForwarded}) {
        for (const auto status : statuses) {
            EXPECT_GT(host.received(status), 0U) << "status " << int{status};
        }
    }
    EXPECT_EQ(host.longestReceived(), 1000U);
}

TEST(RenderCycle, NeitherAllocatesNorFreesNorLocksWhateverTheRulesDo) {
    RealTimeHost host;
    host.unit->processor->setRules(everyRule());
    renderCycles(host, 60);
    EXPECT_EQ(host.calls(), noCalls);

    expectEveryKindOfMessage(host);
    for (const auto trigger :
         {HostTransportTriggerVariantsV2::Start, HostTransportTriggerVariantsV2::Continue,
          HostTransportTriggerVariantsV2::Stop}) {
        EXPECT_EQ(host.logged(trigger), 20U);
    }
}

TEST(RenderCycle, NeitherAllocatesNorFreesNorLocksWithoutRules) {
    RealTimeHost host;
    renderCycles(host, 60);
    EXPECT_EQ(host.calls(), noCalls);
    EXPECT_EQ(host.received(0x95), 60U);
    EXPECT_EQ(host.received(0xFC), 60U);
}

TEST(RenderCycle, NeitherAllocatesNorFreesNorLocksForWhatWasSentByHand) {
    constexpr std::size_t cycles = 20;
    RealTimeHost host;
    for (std::size_t cycle = 0; cycle < cycles; ++cycle) {
        for (int i = 0; i < 10; ++i) {
            host.unit->processor->send(systemExclusiveOf(1000));
            host.unit->processor->send(test::noteOn(0, 60, 100));
        }
        ASSERT_EQ(host.render(), noErr);
    }
    EXPECT_EQ(host.calls(), noCalls);
    EXPECT_EQ(host.received(0xF0), 10 * cycles);
    EXPECT_EQ(host.received(0x90), 10 * cycles);
}

/// More outputs wait than the delay queue holds: the earliest give way, on the render thread, and in the end
/// all that are left leave in one cycle.
TEST(RenderCycle, NeitherAllocatesNorFreesNorLocksWithAFullDelayQueue) {
    constexpr int events = 12000;
    constexpr SampleTime tenSeconds = 441000;
    RealTimeHost host;
    const auto later = test::send(systemExclusiveOf(1000), 10000);
    host.unit->processor->setRules(
        {test::rule(test::onNoteOn(test::any, test::any, PassThroughV2::EatMatching), later)});
    for (int event = 0; event < events; ++event) {
        host.push(everyMessage[0]);
        if (event % 200 == 199) {
            ASSERT_EQ(host.render(), noErr);
        }
    }
    EXPECT_EQ(host.unit->processor->pendingDelayedMessages(), RuleProcessor::delayCapacity);
    EXPECT_EQ(host.received(0xF0), 0U);

    host.skip(tenSeconds);
    ASSERT_EQ(host.render(), noErr);
    EXPECT_EQ(host.received(0xF0), RuleProcessor::delayCapacity);
    EXPECT_EQ(host.calls(), noCalls);
}

/// Installs rules and sends by hand as fast as it can, until told to stop.
class Editor {
public:
    explicit Editor(RuleProcessor& processor) : processor_(processor) {}

    void run() {
        const CallCounter::Scope scope;
        while (!stop_) {
            processor_.setRules(everyRule());
            processor_.send(systemExclusiveOf(1000));
            processor_.setRules({});
            processor_.send(test::noteOn(0, 60, 100));
            ++rounds_;
        }
        locks_ = scope.counts().locks;
    }

    void stop() { stop_ = true; }
    [[nodiscard]] int rounds() const { return rounds_; }

    /// Once it has stopped: at least one for each barrier.
    [[nodiscard]] std::size_t locks() const { return locks_; }

private:
    RuleProcessor& processor_;
    std::atomic<bool> stop_ = false;
    std::atomic<int> rounds_ = 0;
    std::size_t locks_ = 0;
};

/// The render thread may wait, once for each barrier, at the queue's entry and nowhere else.
TEST(RenderCycle, NeitherAllocatesNorFreesWhileOthersChangeTheRules) {
    constexpr int leastRounds = 100;
    RealTimeHost host;
    Editor editor(*host.unit->processor);
    {
        const JoinedThread editing([&] { editor.run(); });
        const JoinedThread saving([&] {
            while (editor.rounds() < leastRounds) {
                EXPECT_TRUE(host.unit->fullState().has_value());
            }
        });
        while (editor.rounds() < leastRounds || host.received(0xF0) == 0) {
            renderCycles(host, 3);
        }
        editor.stop();
    }
    EXPECT_EQ(host.calls().allocations, 0U);
    EXPECT_EQ(host.calls().frees, 0U);
    EXPECT_LE(host.calls().locks, editor.locks());
    EXPECT_GT(host.received(0x95), 0U);
}

}  // namespace
}  // namespace quillo
