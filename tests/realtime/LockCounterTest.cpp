// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <shared_mutex>
#include <thread>

#include "platform/DispatchQueue.hpp"
#include "realtime/CallCounter.hpp"

namespace quillo {
namespace {

using test::CallCounter;

template <class Action>
std::size_t locksOf(Action&& action) {
    const CallCounter::Scope scope;
    action();
    return scope.counts().locks;
}

TEST(LockCounter, CountsEachWayToLockAMutex) {
    std::mutex mutex;
    std::timed_mutex timed;
    EXPECT_EQ(locksOf([&] { const std::lock_guard lock(mutex); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(timed, std::chrono::seconds(1)); }), 1U);
}

TEST(LockCounter, CountsEachWayToLockForReadingOrWriting) {
    std::shared_mutex mutex;
    EXPECT_EQ(locksOf([&] { const std::shared_lock lock(mutex); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::shared_lock lock(mutex, std::try_to_lock); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex); }), 1U);
    EXPECT_EQ(locksOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }), 1U);
}

TEST(LockCounter, CountsAWaitForACondition) {
    std::mutex mutex;
    std::condition_variable condition;
    bool ready = false;
    std::unique_lock lock(mutex);
    std::jthread waker([&] {
        const std::lock_guard wakerLock(mutex);
        ready = true;
        condition.notify_one();
    });
    EXPECT_GE(locksOf([&] { condition.wait(lock, [&] { return ready; }); }), 1U);
    EXPECT_TRUE(ready);
}

TEST(LockCounter, CountsAWaitWithALimit) {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    EXPECT_EQ(locksOf([&] { condition.wait_for(lock, std::chrono::microseconds(1)); }), 1U);
}

TEST(LockCounter, FindsNoLockInAQueueEntryWithoutABarrier) {
    DispatchQueue queue("");
    queue.barrierSync([] {});
    EXPECT_EQ(locksOf([&] { queue.sync([] {}); }), 0U);
    EXPECT_EQ(locksOf([&] { queue.barrierSync([] {}); }), 1U);
}

}  // namespace
}  // namespace quillo
