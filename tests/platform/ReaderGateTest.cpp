// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ReaderGate.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

#include "support/Threads.hpp"

namespace quillo {
namespace {

/// Passes the gate once if it is open; whether it was.
bool passes(ReaderGate& gate) {
    if (!gate.tryEnter()) {
        return false;
    }
    gate.leave();
    return true;
}

/// Waits until another thread has begun to close the gate.
void awaitClosing(ReaderGate& gate) {
    while (passes(gate)) {
        std::this_thread::yield();
    }
}

TEST(ReaderGate, IsOpenAtFirstAndLetsManyIn) {
    ReaderGate gate;
    EXPECT_TRUE(gate.tryEnter());
    EXPECT_TRUE(gate.tryEnter());
    EXPECT_TRUE(gate.tryEnter());
    gate.leave();
    gate.leave();
    gate.leave();
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
}

TEST(ReaderGate, LetsNobodyInWhileClosed) {
    ReaderGate gate;
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
    EXPECT_FALSE(gate.tryEnter());
    gate.open();
    EXPECT_TRUE(passes(gate));
}

TEST(ReaderGate, ARefusalLeavesNoTrace) {
    ReaderGate gate;
    gate.close();
    EXPECT_FALSE(gate.tryEnter());
    gate.open();
    gate.close();
    gate.open();
    EXPECT_TRUE(passes(gate));
}

TEST(ReaderGate, ClosesOnceTheLastOneHasLeft) {
    ReaderGate gate;
    std::atomic<int> left = 0;
    int leftWhenClosed = -1;
    ASSERT_TRUE(gate.tryEnter());
    ASSERT_TRUE(gate.tryEnter());
    {
        const std::jthread closer([&] {
            gate.close();
            leftWhenClosed = left;
        });
        awaitClosing(gate);
        ++left;
        gate.leave();
        EXPECT_FALSE(passes(gate));
        ++left;
        gate.leave();
    }
    EXPECT_EQ(leftWhenClosed, 2);
}

/// Threads that bounce off a closed gate count among those inside for a moment: they must neither keep the
/// closer asleep nor let it go on too early.
TEST(ReaderGate, AlwaysWakesTheCloserWhileOthersBounceOff) {
    constexpr int visitors = 3;
    constexpr int rounds = 2000;
    ReaderGate gate;
    std::atomic<int> inside = 0;
    std::atomic<bool> stop = false;
    std::atomic<int> passed = 0;
    std::latch everybodyHere(visitors + 1);
    int intruders = 0;
    const auto visit = [&](std::size_t) {
        everybodyHere.arrive_and_wait();
        while (!stop) {
            if (gate.tryEnter()) {
                ++inside;
                ++passed;
                --inside;
                gate.leave();
            }
        }
    };
    {
        const Threads threads(visitors, visit);
        everybodyHere.arrive_and_wait();
        for (int round = 0; round < rounds; ++round) {
            gate.close();
            intruders += inside;
            gate.open();
        }
        while (passed == 0) {
            std::this_thread::yield();
        }
        stop = true;
    }
    EXPECT_EQ(intruders, 0);
}

TEST(ReaderGate, EachSideSeesWhatTheOtherWrote) {
    constexpr int rounds = 2000;
    ReaderGate gate;
    int fromCloser = 0;
    int fromVisitor = 0;
    std::atomic<bool> stop = false;
    {
        const std::jthread visitor([&] {
            while (!stop) {
                if (gate.tryEnter()) {
                    fromVisitor = fromCloser;
                    gate.leave();
                }
            }
        });
        for (int round = 1; round <= rounds; ++round) {
            gate.close();
            EXPECT_LT(fromVisitor, round);
            fromCloser = round;
            gate.open();
        }
        stop = true;
    }
    EXPECT_LE(fromVisitor, rounds);
}

}  // namespace
}  // namespace quillo
