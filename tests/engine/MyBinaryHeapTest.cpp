// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MyBinaryHeap.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

#include "engine/DelayedMessage.hpp"

namespace quillo {
namespace {

static_assert(MyPriorityQueue<MyBinaryHeap<DelayedMessage>, DelayedMessage>);

DelayedMessage dueAt(SampleTime time) {
    return {time, MessageList(MIDIMessage{0x90, 60, 100})};
}

std::vector<SampleTime> popAll(MyBinaryHeap<DelayedMessage>& heap) {
    std::vector<SampleTime> times;
    while (const auto element = heap.pop()) {
        times.push_back(element->time);
    }
    return times;
}

TEST(MyBinaryHeap, PopsTheEarliestFirst) {
    MyBinaryHeap<DelayedMessage> heap(10);
    for (const SampleTime time : {30, 10, 20}) {
        heap.push(dueAt(time));
    }
    EXPECT_EQ(popAll(heap), (std::vector<SampleTime>{10, 20, 30}));
}

TEST(MyBinaryHeap, PoppingTheOnlyElementLeavesNothing) {
    MyBinaryHeap<DelayedMessage> heap(10);
    heap.push(dueAt(5));
    ASSERT_NE(heap.peek(), nullptr);
    EXPECT_EQ(heap.peek()->time, 5);
    EXPECT_EQ(heap.pop()->time, 5);
    EXPECT_EQ(heap.size(), 0U);
    EXPECT_EQ(heap.peek(), nullptr);
    EXPECT_EQ(heap.pop(), std::nullopt);
}

TEST(MyBinaryHeap, AFullOneLosesItsEarliestElementToTheNewOne) {
    MyBinaryHeap<DelayedMessage> heap(10000);
    for (SampleTime time = 10000; time >= 1; --time) {
        heap.push(dueAt(time));
    }
    heap.push(dueAt(5));
    EXPECT_EQ(heap.size(), 10000U);
    const auto times = popAll(heap);
    ASSERT_EQ(times.size(), 10000U);
    EXPECT_EQ((std::vector<SampleTime>(times.begin(), times.begin() + 6)),
              (std::vector<SampleTime>{2, 3, 4, 5, 5, 6}));
    EXPECT_EQ(times.back(), 10000);
}

/// An element whose place can be told from its equals.
struct Labelled {
    SampleTime time = 0;
    int label = 0;

    bool operator==(const Labelled&) const = default;
};

TEST(MyBinaryHeap, ElementsOfOneTimeLeaveInTheOrderInWhichTheyWerePushed) {
    MyBinaryHeap<Labelled> heap(20);
    heap.push({8, -1});
    for (int label = 0; label < 10; ++label) {
        heap.push({7, label});
    }
    for (int label = 0; label < 10; ++label) {
        EXPECT_EQ(heap.pop(), (Labelled{7, label}));
        heap.push({8, label});
    }
    EXPECT_EQ(heap.pop(), (Labelled{8, -1}));
    for (int label = 0; label < 10; ++label) {
        EXPECT_EQ(heap.pop(), (Labelled{8, label}));
    }
}

TEST(MyBinaryHeap, WhatTookTheRootsPlaceComesAfterItsEquals) {
    MyBinaryHeap<Labelled> heap(3);
    heap.push({1, 0});
    heap.push({2, 1});
    heap.push({2, 2});
    heap.push({2, 3});
    EXPECT_EQ(heap.pop(), (Labelled{2, 1}));
    EXPECT_EQ(heap.pop(), (Labelled{2, 2}));
    EXPECT_EQ(heap.pop(), (Labelled{2, 3}));
}

TEST(MyBinaryHeap, OneWithoutSlotsTakesNothing) {
    MyBinaryHeap<DelayedMessage> heap(0);
    heap.push(dueAt(1));
    EXPECT_EQ(heap.size(), 0U);
    EXPECT_EQ(heap.peek(), nullptr);
}

TEST(MyBinaryHeap, MixedPushesAndPopsAlwaysYieldTheEarliestThatCameFirst) {
    constexpr std::size_t capacity = 200;
    std::mt19937 random(1);
    MyBinaryHeap<Labelled> heap(capacity);
    std::multimap<SampleTime, int> expected;
    std::uint64_t lost = 0;
    for (int step = 0; step < 20000; ++step) {
        if (expected.empty() || random() % 2 == 0) {
            if (expected.size() == capacity) {
                expected.erase(expected.begin());
                ++lost;
            }
            const auto time = static_cast<SampleTime>(random() % 100) - 50;
            heap.push({time, step});
            expected.insert({time, step});
        } else {
            const auto earliest = expected.begin();
            ASSERT_EQ(*heap.peek(), (Labelled{earliest->first, earliest->second}));
            ASSERT_EQ(heap.pop(), (Labelled{earliest->first, earliest->second}));
            expected.erase(earliest);
        }
        ASSERT_EQ(heap.size(), expected.size());
        ASSERT_EQ(heap.lost(), lost);
    }
}

TEST(MyBinaryHeap, AnElementIsRemovedByItsNumberWhereverItIs) {
    constexpr std::uint64_t most = 40;
    for (std::uint64_t number = 1; number <= most; ++number) {
        std::mt19937 random(7);
        MyBinaryHeap<Labelled> heap(most);
        std::multimap<SampleTime, int> expected;
        for (std::uint64_t pushed = 1; pushed <= most; ++pushed) {
            const auto time = static_cast<SampleTime>(random() % 10);
            heap.push({time, static_cast<int>(pushed)});
            if (pushed != number) {
                expected.insert({time, static_cast<int>(pushed)});
            }
        }
        ASSERT_TRUE(heap.remove(number));
        ASSERT_FALSE(heap.remove(number));
        for (const auto& [time, label] : expected) {
            ASSERT_EQ(heap.pop(), (Labelled{time, label})) << number;
        }
        ASSERT_EQ(heap.size(), 0U);
    }
}

TEST(MyBinaryHeap, NumbersCountWhatWasEverPushed) {
    MyBinaryHeap<Labelled> heap(2);
    heap.push({1, 1});
    EXPECT_TRUE(heap.pop().has_value());
    heap.push({1, 2});
    heap.push({2, 3});
    heap.push({3, 4});
    EXPECT_FALSE(heap.remove(1));
    EXPECT_FALSE(heap.remove(2));
    EXPECT_TRUE(heap.remove(4));
    EXPECT_EQ(heap.pop(), (Labelled{2, 3}));
}

TEST(MyBinaryHeap, AnElementLiesStillInItsSlotWhileOthersComeAndGo) {
    MyBinaryHeap<Labelled> heap(4);
    heap.push({9, 1});
    heap.push({1, 2});
    heap.push({2, 3});
    EXPECT_TRUE(heap.pop().has_value());
    heap.push({0, 4});
    ASSERT_EQ(heap.slotsUsed(), 3U);
    EXPECT_EQ(heap.inSlot(3), nullptr);
    EXPECT_EQ(*heap.inSlot(0), (Labelled{9, 1}));
    EXPECT_EQ(*heap.inSlot(1), (Labelled{0, 4}));
    EXPECT_EQ(*heap.inSlot(2), (Labelled{2, 3}));
    EXPECT_EQ(heap.numberInSlot(1), 4U);
    heap.clear();
    EXPECT_EQ(heap.size(), 0U);
    EXPECT_EQ(heap.inSlot(0), nullptr);
    EXPECT_EQ(heap.numberInSlot(2), 0U);
}

/// How often this process has touched memory that the system had yet to provide.
long pageFaults() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

TEST(MyBinaryHeap, FillingItTouchesNoNewMemory) {
    constexpr std::size_t capacity = 10000;
    constexpr long fewerThanItsPages = 10;  // of some 150; a program faults for code and stack, too
    const auto element = dueAt(1);
    MyBinaryHeap<DelayedMessage> heap(capacity);
    const auto before = pageFaults();
    while (heap.size() < capacity) {
        heap.push(element);
    }
    EXPECT_LT(pageFaults() - before, fewerThanItsPages);
}

TEST(MyBinaryHeap, LetsGoOfWhatItHoldsWhenItGoes) {
    struct Shared {
        SampleTime time = 0;
        std::shared_ptr<int> held;
    };
    const auto held = std::make_shared<int>(1);
    {
        MyBinaryHeap<Shared> heap(3);
        for (SampleTime time = 0; time < 5; ++time) {
            heap.push({time, held});
        }
        EXPECT_EQ(held.use_count(), 4);
        EXPECT_EQ(heap.pop()->held, held);
        EXPECT_EQ(held.use_count(), 3);
    }
    EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quillo
