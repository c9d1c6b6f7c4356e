// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DispatchQueue.hpp"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(PriorityInheritanceMutex, CanBeLockedAgainOnceUnlocked) {
    PriorityInheritanceMutex mutex;
    int entries = 0;
    for (int i = 0; i < 2; ++i) {
        const std::lock_guard lock(mutex);
        ++entries;
    }
    EXPECT_EQ(entries, 2);
}

TEST(PriorityInheritanceMutex, LetsOneThreadInAtATime) {
    constexpr int threads = 4;
    constexpr int rounds = 5000;
    PriorityInheritanceMutex mutex;
    int count = 0;
    const auto increase = [&](std::size_t) {
        for (int round = 0; round < rounds; ++round) {
            const std::lock_guard lock(mutex);
            ++count;
        }
    };
    {
        const Threads counters(threads, increase);
    }
    EXPECT_EQ(count, threads * rounds);
}

TEST(PriorityInheritanceMutex, AWaitingThreadSeesWhatTheHolderWrote) {
    PriorityInheritanceMutex mutex;
    int written = 0;
    int read = 0;
    mutex.lock();
    JoinedThread reader([&] {
        const std::lock_guard lock(mutex);
        read = written;
    });
    written = 7;
    mutex.unlock();
    reader.join();
    EXPECT_EQ(read, 7);
}

}  // namespace
}  // namespace quillo
