// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "log/LogCallback.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(LogCallbackThreads, WhileOneThreadCallsAnotherReplacesTheFunctionAndTheLastOneIsCalled) {
    constexpr int last = 2000;
    const EventLogEntry entry{0, EventLogEntryVariants::Host{HostTransportTriggerVariantsV2::Start}};
    LogCallback callback;
    std::atomic<int> heard{-1};
    std::atomic<bool> stops{false};
    const JoinedThread caller([&] {
        while (!stops) {
            if (callback) {
                callback(entry);
            }
        }
    });
    for (int number = 0; number <= last; ++number) {
        callback = [number, &heard](const EventLogEntry&) { heard.store(number, std::memory_order_relaxed); };
    }
    while (heard.load(std::memory_order_relaxed) != last) {
        std::this_thread::yield();
    }
    stops = true;
}

}  // namespace
}  // namespace quillo
