// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/MyCyclicBuffer.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace quillo {
namespace {

std::vector<int> entries(const MyCyclicBuffer<int>& buffer) {
    return {buffer.begin(), buffer.end()};
}

void appendUpTo(MyCyclicBuffer<int>& buffer, int last) {
    for (int entry = 1; entry <= last; ++entry) {
        buffer.append(entry);
    }
}

TEST(MyCyclicBuffer, ANewBufferIteratesNothing) {
    const MyCyclicBuffer<int> buffer(100);
    EXPECT_EQ(entries(buffer), std::vector<int>{});
    EXPECT_EQ(buffer.size(), 0U);
    EXPECT_EQ(buffer.capacity(), 100U);
}

TEST(MyCyclicBuffer, IteratesItsEntriesInTheOrderOfTheirAppends) {
    MyCyclicBuffer<int> buffer(100);
    appendUpTo(buffer, 3);
    EXPECT_EQ(entries(buffer), (std::vector{1, 2, 3}));
    EXPECT_EQ(buffer[0], 1);
    EXPECT_EQ(buffer[2], 3);
}

TEST(MyCyclicBuffer, AFullBufferForgetsItsOldestEntry) {
    MyCyclicBuffer<int> buffer(100);
    appendUpTo(buffer, 101);
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 2);
    EXPECT_EQ(entries(buffer), expected);
    EXPECT_EQ(buffer.start(), 1U);
    EXPECT_EQ(buffer.size(), 100U);
    EXPECT_EQ(buffer[0], 2);
}

TEST(MyCyclicBuffer, KeepsTheNewestAfterManyRounds) {
    MyCyclicBuffer<int> buffer(3);
    appendUpTo(buffer, 1000);
    EXPECT_EQ(entries(buffer), (std::vector{998, 999, 1000}));
}

TEST(MyCyclicBuffer, AfterClearOneAppendYieldsExactlyThatEntry) {
    MyCyclicBuffer<int> buffer(100);
    appendUpTo(buffer, 150);
    buffer.clear();
    EXPECT_EQ(entries(buffer), std::vector<int>{});
    EXPECT_EQ(buffer.start(), 50U);
    buffer.append(7);
    EXPECT_EQ(entries(buffer), std::vector<int>{7});
}

TEST(MyCyclicBuffer, CopiesShareTheirSlotsButKeepTheirOwnSize) {
    MyCyclicBuffer<int> first(2);
    appendUpTo(first, 2);
    auto second = first;
    second.append(3);
    EXPECT_EQ(entries(second), (std::vector{2, 3}));
    EXPECT_EQ(first.size(), 2U);
    EXPECT_EQ(entries(first), (std::vector{3, 2}));
}

TEST(MyCyclicBuffer, AnIteratorEndsWhereTheBufferEndedWhenItWasMade) {
    MyCyclicBuffer<int> buffer(10);
    appendUpTo(buffer, 2);
    const auto end = buffer.end();
    buffer.append(3);
    EXPECT_EQ(std::vector<int>(buffer.begin(), end), (std::vector{1, 2}));
}

TEST(MyCyclicBuffer, AppendingWithoutRoomIsFatal) {
    MyCyclicBuffer<int> buffer(0);
    EXPECT_THROW(buffer.append(1), FatalError);
}

TEST(MyCyclicBuffer, ReadingAnEmptySlotIsFatal) {
    MyCyclicBuffer<int> buffer(3);
    buffer.append(1);
    EXPECT_THROW(static_cast<void>(buffer[1]), FatalError);
    EXPECT_THROW(static_cast<void>(MyCyclicBuffer<int>(0)[0]), FatalError);
}

TEST(MyCyclicBuffer, AnIndexBeyondTheSizeReadsWhatTheSlotStillHolds) {
    MyCyclicBuffer<int> buffer(2);
    appendUpTo(buffer, 2);
    buffer.clear();
    EXPECT_EQ(buffer[1], 2);
}

}  // namespace
}  // namespace quillo
