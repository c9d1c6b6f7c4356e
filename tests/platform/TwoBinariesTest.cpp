// SPDX-License-Identifier: GPL-3.0-or-later
// A gate and a queue in the hands of two shared objects, as a
// plug-in's are in those of its host or its editor. A wait that only one of them knows of never ends, and
// this test neither.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "platform/DispatchQueue.hpp"
#include "platform/OtherBinary.hpp"
#include "platform/ReaderGate.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

constexpr std::uint64_t entries = 10'000'000;

TEST(TwoBinaries, TheLastOneOutOfAGateWakesTheOneThatClosesIt) {
    constexpr int rounds = 1000;
    ReaderGate gate;
    std::atomic<int> entered{0};
    const auto closer = ::gettid();
    const JoinedThread visitor([&] { otherBinaryLeavesClosingGate(gate, entered, rounds, closer); });
    for (int round = 1; round <= rounds; ++round) {
        while (entered < round) {
            std::this_thread::yield();
        }
        gate.close();
        EXPECT_EQ(entered, round);
        gate.open();
    }
}

TEST(TwoBinaries, AQueueIsClosedInOneWhileTheOtherEntersTenMillionTimes) {
    DispatchQueue queue("test");
    std::atomic<bool> done{false};
    std::uint64_t barriers = 0;
    {
        const JoinedThread visitor([&] {
            otherBinaryEnters(queue, entries);
            done = true;
        });
        while (!done) {
            queue.barrierSync([&] { ++barriers; });
        }
    }
    EXPECT_GT(barriers, 0U);
}

TEST(TwoBinaries, AQueueIsEnteredTenMillionTimesInOneWhileTheOtherClosesIt) {
    DispatchQueue queue("test");
    std::atomic<bool> done{false};
    std::uint64_t barriers = 0;
    {
        const JoinedThread closer([&] { barriers = otherBinaryCloses(queue, done); });
        for (std::uint64_t entered = 0; entered < entries; ++entered) {
            const DispatchQueue::RenderEntry entry(queue);
        }
        done = true;
    }
    EXPECT_GT(barriers, 0U);
}

}  // namespace
}  // namespace quillo
