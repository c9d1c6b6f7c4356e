// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "log/LogCallback.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

/// While one thread does `call` again and again, another replaces what is called: the last one is, too.
template <class Call, class Replace>
void expectTheLastToBeCalled(Call call, Replace replace) {
    constexpr int last = 2000;
    LogCallback callback;
    std::atomic<int> heard{-1};
    std::atomic<bool> stops{false};
    const JoinedThread caller([&] {
        while (!stops) {
            call(callback);
        }
    });
    for (int number = 0; number <= last; ++number) {
        replace(callback, [number, &heard] { heard.store(number, std::memory_order_relaxed); });
    }
    while (heard.load(std::memory_order_relaxed) != last) {
        std::this_thread::yield();
    }
    stops = true;
}

const EventLogEntry entry{0, EventLogEntryVariants::Host{HostTransportTriggerVariantsV2::Start}};

TEST(LogCallbackThreads, WhileOneThreadCallsAnotherReplacesTheFunctionAndTheLastOneIsCalled) {
    expectTheLastToBeCalled(
        [](const LogCallback& callback) {
            if (callback) {
                callback(entry);
            }
        },
        [](LogCallback& callback, auto function) {
            callback = [function](const EventLogEntry&) { function(); };
        });
}

TEST(LogCallbackThreads, WhileOneThreadEndsBlocksAnotherReplacesTheFunctionAndTheLastOneIsCalled) {
    expectTheLastToBeCalled(
        [](const LogCallback& callback) { callback.endBlock(); },
        [](LogCallback& callback, auto function) { callback.listen([](const EventLogEntry&) {}, function); });
}

}  // namespace
}  // namespace quillo
