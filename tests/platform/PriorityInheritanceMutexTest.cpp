// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DispatchQueue.hpp"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <mutex>
#include <thread>

#include "support/Threads.hpp"
#include "support/WatchedThread.hpp"

namespace {

/// Of the last mutex that was made with attributes.
int protocolOfMutex = -1;

}  // namespace

/// In the place of the system's, which it calls.
extern "C" int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) {
    if (attributes != nullptr) {
        ::pthread_mutexattr_getprotocol(attributes, &protocolOfMutex);
    }
    using Init = int (*)(pthread_mutex_t*, const pthread_mutexattr_t*);
    static const auto init = reinterpret_cast<Init>(::dlsym(RTLD_NEXT, "pthread_mutex_init"));
    return init(mutex, attributes);
}

namespace quillo {
namespace {

TEST(PriorityInheritanceMutex, LendsItsHolderThePriorityOfThoseWhoWait) {
    const PriorityInheritanceMutex mutex;
    EXPECT_EQ(protocolOfMutex, PTHREAD_PRIO_INHERIT);
}

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
    test::WatchedThread reader([&] {
        const std::lock_guard lock(mutex);
        read = written;
    });
    reader.awaitSleepOrEnd();
    written = 7;
    mutex.unlock();
    reader.join();
    EXPECT_EQ(read, 7);
}

}  // namespace
}  // namespace quillo
