// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MyBinaryHeap.hpp"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
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

TEST(MyBinaryHeap, ElementsOfEqualTimeAreAllReturned) {
    MyBinaryHeap<DelayedMessage> heap(10);
    const DelayedMessage one{7, MessageList(MIDIMessage{0x90, 1, 1})};
    const DelayedMessage other{7, MessageList(MIDIMessage{0x90, 2, 2})};
    heap.push(one);
    heap.push(other);
    const auto first = heap.pop();
    const auto second = heap.pop();
    EXPECT_TRUE((first == one && second == other) || (first == other && second == one));
}

TEST(MyBinaryHeap, OneWithoutSlotsTakesNothing) {
    MyBinaryHeap<DelayedMessage> heap(0);
    heap.push(dueAt(1));
    EXPECT_EQ(heap.size(), 0U);
    EXPECT_EQ(heap.peek(), nullptr);
}

TEST(MyBinaryHeap, MixedPushesAndPopsAlwaysYieldTheEarliest) {
    std::mt19937 random(1);
    MyBinaryHeap<DelayedMessage> heap(200);
    std::multiset<SampleTime> expected;
    for (int step = 0; step < 20000; ++step) {
        if (expected.size() < 200 && (expected.empty() || random() % 2 == 0)) {
            const auto time = static_cast<SampleTime>(random() % 100) - 50;
            heap.push(dueAt(time));
            expected.insert(time);
        } else {
            ASSERT_EQ(heap.pop()->time, *expected.begin());
            expected.erase(expected.begin());
        }
        ASSERT_EQ(heap.size(), expected.size());
    }
}

/// An element whose place can be told from its equals.
struct Labelled {
    int key;
    char label;

    friend auto operator<=>(const Labelled& a, const Labelled& b) { return a.key <=> b.key; }
};

TEST(MyBinaryHeap, SiftsEqualsTheSameWayOnEveryMachine) {
    MyBinaryHeap<Labelled> heap(8);
    for (const char label : {'a', 'b', 'c', 'd'}) {
        heap.push({1, label});
    }
    std::string order;
    while (const auto element = heap.pop()) {
        order += element->label;
    }
    EXPECT_EQ(order, "adcb");
}

}  // namespace
}  // namespace quillo
