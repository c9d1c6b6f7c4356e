// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/WithoutCancellation.hpp"

#include <gtest/gtest.h>

#include <atomic>

namespace quillo {
namespace {

/// What a cancelled thread has done.
struct Deed {
    std::atomic<bool> began{false};
    std::atomic<bool> cancelled{false};
    std::atomic<bool> finished{false};

    void run() noexcept {
        began = true;
        while (!cancelled) {
        }
        ::pthread_testcancel();
        finished = true;
    }
};

void* runOnThread(void* deed) {
    ::pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, nullptr);
    withoutCancellation([&] { static_cast<Deed*>(deed)->run(); });
    for (;;) {
        ::pthread_testcancel();
    }
}

TEST(WithoutCancellation, WhatIsUnderWayIsFinishedAndThenTheThreadIsCancelled) {
    Deed deed;
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, nullptr, &runOnThread, &deed), 0);
    while (!deed.began) {
    }
    ::pthread_cancel(thread);
    deed.cancelled = true;
    // Nothing but a cancellation ends this thread.
    ASSERT_EQ(::pthread_join(thread, nullptr), 0);
    EXPECT_TRUE(deed.finished);
}

}  // namespace
}  // namespace quillo
