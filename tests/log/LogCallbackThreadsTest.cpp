// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "log/LogCallback.hpp"

namespace quillo {
namespace {

TEST(LogCallbackThreads, WhileOneThreadCallsAnotherReplacesTheFunctionAndTheLastOneIsCalled) {
    constexpr int last = 2000;
    const EventLogEntry entry{0, EventLogEntryVariants::Host{HostTransportTriggerVariantsV2::Start}};
    LogCallback callback;
    std::atomic<int> heard{-1};
    const std::jthread caller([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
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
}

}  // namespace
}  // namespace quillo
