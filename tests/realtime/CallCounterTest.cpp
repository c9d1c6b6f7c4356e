// SPDX-License-Identifier: GPL-3.0-or-later
#include "realtime/CallCounter.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace quillo {
namespace {

using test::CallCounter;
using test::CallCounts;
using test::noCalls;

/// Hides what becomes of memory from the optimiser, which may otherwise leave out an allocation.
void keep(void* memory) {
    __asm__ volatile("" : : "r"(memory) : "memory");
}

/// What `action` does, counted.
template <class Action>
CallCounts countsOf(Action&& action) {
    const CallCounter::Scope scope;
    action();
    return scope.counts();
}

void allocateAndFree(void* memory) {
    keep(memory);
    std::free(memory);
}

TEST(CallCounter, FindsNothingWhereNothingHappens) {
    int number = 0;
    EXPECT_EQ(countsOf([&] { ++number; }), noCalls);
}

TEST(CallCounter, CountsEachWayToAllocate) {
    const CallCounts onePair{1, 1, 0};
    EXPECT_EQ(countsOf([] { allocateAndFree(std::malloc(8)); }), onePair);
    EXPECT_EQ(countsOf([] { allocateAndFree(std::calloc(2, 8)); }), onePair);
    EXPECT_EQ(countsOf([] {
                  const auto number = std::make_unique<int>(7);
                  keep(number.get());
              }),
              onePair);
}

TEST(CallCounter, CountsReallocationAsBoth) {
    auto* memory = std::malloc(8);
    keep(memory);
    void* larger = nullptr;
    EXPECT_EQ(countsOf([&] { larger = std::realloc(memory, 100000); }), (CallCounts{1, 1, 0}));
    std::free(larger);
}

TEST(CallCounter, CountsWhatALibraryAllocates) {
    const auto counts = countsOf([] {
        const std::string text(100, 'x');
        const std::vector<int> numbers(10);
        keep(const_cast<char*>(text.data()));
    });
    EXPECT_EQ(counts, (CallCounts{2, 2, 0}));
}

TEST(CallCounter, FreeingNothingIsNothing) {
    EXPECT_EQ(countsOf([] { std::free(nullptr); }), noCalls);
}

TEST(CallCounter, CountsOnlyWithinItsScope) {
    allocateAndFree(std::malloc(8));
    const CallCounter::Scope outer;
    {
        const CallCounter::Scope inner;
        allocateAndFree(std::malloc(8));
        EXPECT_EQ(inner.counts(), (CallCounts{1, 1, 0}));
    }
    EXPECT_EQ(outer.counts(), noCalls);
    allocateAndFree(std::malloc(8));
    EXPECT_EQ(outer.counts(), (CallCounts{1, 1, 0}));
}

TEST(CallCounter, CountsOnlyItsOwnThread) {
    CallCounts elsewhere;
    auto allocator = [&] { elsewhere = countsOf([] { allocateAndFree(std::malloc(8)); }); };
    std::thread thread;
    const auto counts = countsOf([&] { thread = std::thread(allocator); });
    thread.join();
    EXPECT_EQ(elsewhere, (CallCounts{1, 1, 0}));
    EXPECT_GE(counts.allocations, 1U);  // the thread's own start
}

}  // namespace
}  // namespace quillo
