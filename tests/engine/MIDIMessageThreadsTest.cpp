// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <utility>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "engine/SharedBytes.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(MIDIMessageThreads, BytesOfALongOneAreReadBeforeAnotherThreadFreesThem) {
    std::vector<MIDIMessage> messages;
    for (int i = 0; i < 2000; ++i) {
        messages.push_back(MIDIMessage::copyOf(std::vector<std::uint8_t>(1000, 3)));
    }
    std::atomic<int> reading = 2;
    const auto readAndDrop = [&reading](std::vector<MIDIMessage> held) {
        for (auto& message : held) {
            const auto bytes = message.bytes();
            EXPECT_EQ(std::accumulate(bytes.begin(), bytes.end(), 0U), 3000U);
            message = MIDIMessage();
        }
        reading.fetch_sub(1, std::memory_order_relaxed);
    };
    const JoinedThread one([&, held = messages]() mutable { readAndDrop(std::move(held)); });
    const JoinedThread other(
        [&, held = std::exchange(messages, {})]() mutable { readAndDrop(std::move(held)); });
    while (reading.load(std::memory_order_relaxed) > 0) {
        SharedBytes::freeRetired();
    }
    SharedBytes::freeRetired();
}

}  // namespace
}  // namespace quillo
