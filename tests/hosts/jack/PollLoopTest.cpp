// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/PollLoop.hpp"

#include <gtest/gtest.h>

#include "hosts/jack/WakeDescriptor.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(PollLoop, RunsTheCallbackOfADescriptorThatCanBeReadUntilItIsToldToQuit) {
    PollLoop loop;
    const WakeDescriptor wake;
    int wakes = 0;
    loop.watch(wake.number(), [&] {
        wake.clear();
        if (++wakes == 3) {
            loop.quit(5);
        } else {
            wake.wake();
        }
    });
    wake.wake();
    EXPECT_EQ(loop.run(), 5);
    EXPECT_EQ(wakes, 3);
}

TEST(PollLoop, IsWokenByAnotherThread) {
    PollLoop loop;
    const WakeDescriptor wake;
    loop.watch(wake.number(), [&] { loop.quit(0); });
    const JoinedThread waker([&] { wake.wake(); });
    EXPECT_EQ(loop.run(), 0);
}

TEST(PollLoop, TicksAgainAndAgain) {
    PollLoop loop;
    int ticks = 0;
    loop.setTick([&] {
        if (++ticks == 4) {
            loop.quit(1);
        }
    });
    EXPECT_EQ(loop.run(), 1);
    EXPECT_EQ(ticks, 4);
}

TEST(PollLoop, NothingRunsBehindQuit) {
    PollLoop loop;
    const WakeDescriptor first;
    const WakeDescriptor second;
    int calls = 0;
    for (const auto* wake : {&first, &second}) {
        wake->wake();
        loop.watch(wake->number(), [&] {
            ++calls;
            loop.quit(0);
        });
    }
    loop.run();
    EXPECT_EQ(calls, 1);
}

TEST(WakeDescriptor, ManyWakesAreOne) {
    PollLoop loop;
    const WakeDescriptor wake;
    int calls = 0;
    wake.wake();
    wake.wake();
    wake.wake();
    loop.watch(wake.number(), [&] {
        wake.clear();
        ++calls;
    });
    loop.setTick([&] { loop.quit(0); });
    loop.run();
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace quillo
