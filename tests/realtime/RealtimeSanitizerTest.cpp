// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/DispatchQueue.hpp"
#include "platform/RealTime.hpp"

namespace quillo {
namespace {

void allocate() {
    void* volatile memory = std::malloc(8);
    std::free(memory);
}

void lock() {
    PriorityInheritanceMutex mutex;
    mutex.lock();
    mutex.unlock();
}

template <class Action>
void runInRealTime(Action action) QUILLO_REALTIME {
    action();
}

TEST(RealtimeSanitizer, StopsAtAForbiddenCall) {
    EXPECT_DEATH(runInRealTime(allocate), "RealtimeSanitizer: unsafe-library-call");
    EXPECT_DEATH(runInRealTime(lock), "RealtimeSanitizer: unsafe-library-call");
}

}  // namespace
}  // namespace quillo
