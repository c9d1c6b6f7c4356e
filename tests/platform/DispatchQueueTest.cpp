// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DispatchQueue.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/Threads.hpp"
#include "support/WatchedThread.hpp"

namespace quillo {
namespace {

using test::WatchedThread;

TEST(DispatchQueue, HasItsLabel) {
    EXPECT_EQ(DispatchQueue("a queue").label(), "a queue");
}

TEST(DispatchQueue, ReturnsWhatTheBlockReturns) {
    DispatchQueue queue("");
    EXPECT_EQ(queue.sync([] { return 1; }), 1);
    EXPECT_EQ(queue.barrierSync([] { return std::string("two"); }), "two");
    EXPECT_EQ(*queue.sync([] { return std::make_unique<int>(3); }), 3);
}

TEST(DispatchQueue, RunsBlocksOnTheCallersThreadBeforeItReturns) {
    DispatchQueue queue("");
    std::vector<std::thread::id> threads;
    queue.sync([&] { threads.push_back(std::this_thread::get_id()); });
    queue.barrierSync([&] { threads.push_back(std::this_thread::get_id()); });
    EXPECT_EQ(threads, std::vector(2, std::this_thread::get_id()));
}

TEST(DispatchQueue, IsLeftByABlockThatThrows) {
    DispatchQueue queue("");
    EXPECT_THROW(queue.sync([] { throw std::runtime_error("in a block"); }), std::runtime_error);
    EXPECT_THROW(queue.barrierSync([] { throw std::runtime_error("in a barrier"); }), std::runtime_error);
    EXPECT_EQ(queue.barrierSync([] { return 1; }), 1);
    EXPECT_EQ(queue.sync([] { return 2; }), 2);
}

/// Each block waits inside for all the others: this ends only when they run side by side.
TEST(DispatchQueue, RunsSyncBlocksSideBySide) {
    constexpr int readers = 4;
    DispatchQueue queue("");
    std::barrier allInside(readers);
    std::atomic<int> finished = 0;
    const auto read = [&](std::size_t) {
        queue.sync([&] { allInside.arrive_and_wait(); });
        ++finished;
    };
    {
        const Threads threads(readers, read);
    }
    EXPECT_EQ(finished, readers);
}

/// While a block is inside by the first way, one that comes by the second waits; then it sees what the first
/// wrote.
template <typename First, typename Second>
void expectTheSecondToWait(const First& enterFirst, const Second& enterSecond) {
    std::atomic<bool> inside = false;
    int written = 0;
    int read = 0;
    std::optional<WatchedThread> second;
    enterFirst([&] {
        second.emplace([&] {
            enterSecond([&] {
                inside = true;
                read = written;
            });
        });
        second->awaitSleepOrEnd();
        EXPECT_FALSE(inside);
        written = 7;
    });
    second->join();
    EXPECT_EQ(read, 7);
}

TEST(DispatchQueue, ASyncBlockWaitsForTheBarrierAndSeesWhatItWrote) {
    DispatchQueue queue("");
    expectTheSecondToWait([&](const auto& block) { queue.barrierSync(block); },
                          [&](const auto& block) { queue.sync(block); });
}

TEST(DispatchQueue, ABarrierWaitsForTheSyncBlockAndSeesWhatItWrote) {
    DispatchQueue queue("");
    expectTheSecondToWait([&](const auto& block) { queue.sync(block); },
                          [&](const auto& block) { queue.barrierSync(block); });
}

/// Runs a block as the render thread does.
template <class Block>
void syncAsRenderThread(DispatchQueue& queue, const Block& block) {
    const DispatchQueue::RenderEntry entry(queue);
    block();
}

TEST(DispatchQueue, TheRenderThreadWaitsForTheBarrierAndSeesWhatItWrote) {
    DispatchQueue queue("");
    expectTheSecondToWait([&](const auto& block) { queue.barrierSync(block); },
                          [&](const auto& block) { syncAsRenderThread(queue, block); });
}

TEST(DispatchQueue, ABarrierWaitsForTheRenderThreadAndSeesWhatItWrote) {
    DispatchQueue queue("");
    expectTheSecondToWait([&](const auto& block) { syncAsRenderThread(queue, block); },
                          [&](const auto& block) { queue.barrierSync(block); });
}

/// The reader stays inside until the render thread has been: this ends only when that does not wait for the
/// barrier that waits for the reader.
TEST(DispatchQueue, ABarrierThatWaitsForReadersDoesNotKeepTheRenderThreadWaiting) {
    DispatchQueue queue("");
    std::optional<WatchedThread> installer;
    bool barrierRan = false;
    queue.sync([&] {
        installer.emplace([&] { queue.barrierSync([&] { barrierRan = true; }); });
        installer->awaitSleepOrEnd();
        JoinedThread([&] { syncAsRenderThread(queue, [&] { EXPECT_FALSE(barrierRan); }); }).join();
    });
    installer->join();
    EXPECT_TRUE(barrierRan);
}

/// Two counters that only barriers change, always both: no block may ever find them apart.
TEST(DispatchQueue, BarriersExcludeEverybodyElse) {
    constexpr int threads = 2;
    constexpr int rounds = 2000;
    DispatchQueue queue("");
    int first = 0;
    int second = 0;
    std::atomic<int> foundApart = 0;
    const auto write = [&](std::size_t) {
        for (int round = 0; round < rounds; ++round) {
            queue.barrierSync([&] {
                ++first;
                ++second;
            });
        }
    };
    const auto read = [&](std::size_t) {
        for (int round = 0; round < rounds; ++round) {
            queue.sync([&] { foundApart += first == second ? 0 : 1; });
        }
    };
    std::atomic<bool> stop = false;
    const auto render = [&] {
        while (!stop) {
            int apart = 0;
            syncAsRenderThread(queue, [&] { apart = first == second ? 0 : 1; });
            foundApart += apart;
        }
    };
    {
        const JoinedThread renderThread(render);
        {
            const Threads writers(threads, write);
            const Threads readers(threads, read);
        }
        stop = true;
    }
    EXPECT_EQ(foundApart, 0);
    EXPECT_EQ(first, threads * rounds);
    EXPECT_EQ(second, threads * rounds);
}

}  // namespace
}  // namespace quillo
