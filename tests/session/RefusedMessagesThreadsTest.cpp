// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "session/RefusedMessages.hpp"
#include "support/OutputRecorder.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using namespace test;

Bytes exclusive(std::size_t size, std::uint8_t byte) {
    Bytes bytes(size, byte);
    bytes.front() = 0xF0;
    return bytes;
}

TEST(RefusedMessagesThreads, WhatIsTakenWhileAnotherThreadAddsIsWholeAndInItsOrder) {
    constexpr int most = 20000;
    RefusedMessages refused;
    const auto add = [&](std::size_t) {
        for (int number = 0; number < most; ++number) {
            const auto byte = static_cast<std::uint8_t>(number % 251);
            refused.add(exclusive(static_cast<std::size_t>(number) + 1, byte), number % 2 == 0);
        }
    };
    std::size_t last = 0;
    const auto takeAll = [&] {
        while (const auto message = refused.takeNext()) {
            EXPECT_GT(message->size, last);
            last = message->size;
            EXPECT_TRUE(message->matches(exclusive(last, static_cast<std::uint8_t>((last - 1) % 251))));
            EXPECT_EQ(message->fitsNever, (last - 1) % 2 == 0);
        }
    };
    {
        const Threads render(1, add);
        while (refused.refused() + refused.leftOut() < most) {
            takeAll();
        }
    }
    takeAll();
    EXPECT_GT(last, 0U);
    EXPECT_EQ(refused.refused(), most / 2U);
    EXPECT_EQ(refused.leftOut(), most / 2U);
}

}  // namespace
}  // namespace quillo
