// SPDX-License-Identifier: GPL-3.0-or-later
// What is counted only where the program's own functions stand in front of the system's.
#include <gtest/gtest.h>

#include <malloc.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <shared_mutex>
#include <vector>

#include "platform/DispatchQueue.hpp"
#include "realtime/CallCounter.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using test::CallCounter;

/// To lock such a mutex and to let it go: libc++ guards what each knows with a plain mutex, every
/// time.
#ifdef _LIBCPP_VERSION
constexpr std::size_t locksOfATimedOrSharedMutex = 2;
#else
constexpr std::size_t locksOfATimedOrSharedMutex = 1;
#endif

template <class Action>
std::size_t locksOf(Action&& action) {
    const CallCounter::Scope scope;
    action();
    return scope.counts().locks;
}

TEST(InterposedCalls, CountsEachWayToAllocateAligned) {
    struct alignas(64) Wide {
        std::array<char, 64> bytes;
    };
    const auto allocationsOf = [](auto&& allocate) {
        const CallCounter::Scope scope;
        void* volatile memory = allocate();  // an optimiser leaves out what is only made and freed
        std::free(memory);
        return scope.counts().allocations;
    };
    EXPECT_EQ(allocationsOf([] { return std::aligned_alloc(64, 128); }), 1U);
    EXPECT_EQ(allocationsOf([] { return ::memalign(64, 8); }), 1U);
    EXPECT_EQ(allocationsOf([] {
                  void* memory = nullptr;
                  return ::posix_memalign(&memory, 64, 8) == 0 ? memory : nullptr;
              }),
              1U);
    const CallCounter::Scope scope;
    const std::vector<Wide> wide(3);
    EXPECT_EQ(scope.counts().allocations, 1U);
    EXPECT_EQ(wide.size(), 3U);
}

TEST(InterposedCalls, CountsEachWayToLockAMutex) {
    std::mutex mutex;
    std::timed_mutex timed;
    EXPECT_EQ(locksOf([&] { const std::lock_guard lock(mutex); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(timed, std::chrono::seconds(1)); }),
              locksOfATimedOrSharedMutex);
}

TEST(InterposedCalls, CountsEachWayToLockForReadingOrWriting) {
    std::shared_mutex mutex;
    EXPECT_EQ(locksOf([&] { const std::shared_lock lock(mutex); }), locksOfATimedOrSharedMutex);
    EXPECT_EQ(locksOf([&] { const std::shared_lock lock(mutex, std::try_to_lock); }),
              locksOfATimedOrSharedMutex);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex); }), locksOfATimedOrSharedMutex);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }),
              locksOfATimedOrSharedMutex);
}

TEST(InterposedCalls, CountsAWaitForACondition) {
    std::mutex mutex;
    std::condition_variable condition;
    bool ready = false;
    std::unique_lock lock(mutex);
    JoinedThread waker([&] {
        const std::lock_guard wakerLock(mutex);
        ready = true;
        condition.notify_one();
    });
    EXPECT_GE(locksOf([&] { condition.wait(lock, [&] { return ready; }); }), 1U);
    EXPECT_TRUE(ready);
}

TEST(InterposedCalls, CountsAWaitWithALimit) {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    EXPECT_EQ(locksOf([&] { condition.wait_for(lock, std::chrono::microseconds(1)); }), 1U);
}

TEST(InterposedCalls, FindsNoLockInTheRenderThreadsEntryWithoutABarrier) {
    DispatchQueue queue("");
    queue.barrierSync([] {});
    EXPECT_EQ(locksOf([&] { const DispatchQueue::RenderEntry entry(queue); }), 0U);
    EXPECT_EQ(locksOf([&] { queue.sync([] {}); }), locksOfATimedOrSharedMutex);
    EXPECT_EQ(locksOf([&] { queue.barrierSync([] {}); }), locksOfATimedOrSharedMutex + 1);
}

}  // namespace
}  // namespace quillo
