// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MainQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/Threads.hpp"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainQueue, RunsNothingBeforeItIsDrained) {
    MainQueue queue;
    std::vector<int> ran;
    queue.async([&] { ran.push_back(1); });
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_THAT(ran, ElementsAre(1));
}

TEST(MainQueue, RunsBlocksInTheOrderOfPosting) {
    MainQueue queue;
    std::vector<int> ran;
    for (const int number : {3, 1, 2}) {
        queue.async([&ran, number] { ran.push_back(number); });
    }
    EXPECT_EQ(queue.drain(), 3U);
    EXPECT_THAT(ran, ElementsAre(3, 1, 2));
}

TEST(MainQueue, KnowsTheThreadThatHasMadeItAsTheMainThread) {
    const MainQueue queue;
    EXPECT_TRUE(queue.isMainThread());
    bool elsewhere = true;
    std::thread([&] { elsewhere = queue.isMainThread(); }).join();
    EXPECT_FALSE(elsewhere);
}

TEST(MainQueue, BelievesThePlatformAboutTheMainThread) {
    bool isMainThread = false;
    const MainQueue queue([&isMainThread] { return isMainThread; });
    EXPECT_FALSE(queue.isMainThread());
    isMainThread = true;
    EXPECT_TRUE(queue.isMainThread());
}

TEST(MainQueue, RunsEachBlockOnce) {
    MainQueue queue;
    int runs = 0;
    queue.async([&] { ++runs; });
    queue.drain();
    EXPECT_EQ(queue.drain(), 0U);
    EXPECT_EQ(runs, 1);
}

TEST(MainQueue, WhatABlockPostsWaitsForTheNextDrain) {
    MainQueue queue;
    std::vector<int> ran;
    queue.async([&] {
        ran.push_back(1);
        queue.async([&] { ran.push_back(3); });
    });
    queue.async([&] { ran.push_back(2); });
    EXPECT_EQ(queue.drain(), 2U);
    EXPECT_THAT(ran, ElementsAre(1, 2));
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(MainQueue, WakesOnlyForAPostToAnEmptyQueue) {
    MainQueue queue;
    int wakes = 0;
    queue.setWake([&] { ++wakes; });
    queue.async([] {});
    queue.async([] {});
    EXPECT_EQ(wakes, 1);
    queue.drain();
    queue.async([] {});
    EXPECT_EQ(wakes, 2);
}

TEST(MainQueue, WakesForAPostFromOneOfItsBlocks) {
    MainQueue queue;
    int wakes = 0;
    queue.setWake([&] { ++wakes; });
    queue.async([&] { queue.async([] {}); });
    queue.drain();
    EXPECT_EQ(wakes, 2);
}

TEST(MainQueue, MayBeDrainedFromItsWake) {
    MainQueue queue;
    int runs = 0;
    queue.setWake([&] { queue.drain(); });
    queue.async([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST(MainQueue, BlocksBehindOneThatThrowsWaitForTheNextDrainAndAskForIt) {
    MainQueue queue;
    int wakes = 0;
    std::vector<int> ran;
    queue.setWake([&] { ++wakes; });
    queue.async([&] { ran.push_back(1); });
    queue.async([&] {
        queue.async([&] { ran.push_back(4); });
        throw std::runtime_error("in a block");
    });
    queue.async([&] { ran.push_back(2); });
    queue.async([&] { ran.push_back(3); });
    wakes = 0;
    EXPECT_THROW(queue.drain(), std::runtime_error);
    EXPECT_THAT(ran, ElementsAre(1));
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(queue.drain(), 3U);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
}

TEST(MainQueue, BlocksBehindAPollThatThrowsWaitForTheNextDrainAndAskForIt) {
    MainQueue queue;
    int wakes = 0;
    int ran = 0;
    queue.setWake([&] { ++wakes; });
    auto poll = queue.onDrain([] { throw std::runtime_error("in a poll"); });
    queue.async([&] { ++ran; });
    EXPECT_THROW(queue.drain(), std::runtime_error);
    EXPECT_EQ(wakes, 2);
    poll.reset();
    EXPECT_EQ(queue.drain(), 1U);
    EXPECT_EQ(ran, 1);
}

TEST(MainQueue, ABlockThatThrowsLastLeavesNothingBehind) {
    MainQueue queue;
    queue.async([] { throw std::runtime_error("in a block"); });
    EXPECT_THROW(queue.drain(), std::runtime_error);
    EXPECT_EQ(queue.drain(), 0U);
}

TEST(MainQueue, KeepsEachThreadsOrderWhenSeveralPost) {
    constexpr int threads = 4;
    constexpr int posts = 500;
    MainQueue queue;
    std::atomic<int> wakes = 0;
    queue.setWake([&] { ++wakes; });
    std::vector<std::vector<int>> ran(threads);
    std::size_t drained = 0;
    const auto post = [&](std::size_t thread) {
        for (int number = 0; number < posts; ++number) {
            queue.async([&mine = ran[thread], number] { mine.push_back(number); });
        }
    };
    {
        const Threads posters(threads, post);
        while (drained < std::size_t{threads} * posts) {
            drained += queue.drain();
        }
    }
    EXPECT_GT(wakes, 0);
    for (const auto& numbers : ran) {
        ASSERT_EQ(numbers.size(), std::size_t{posts});
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

}  // namespace
}  // namespace quillo
