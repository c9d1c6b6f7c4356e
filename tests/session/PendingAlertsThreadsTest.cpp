// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "session/PendingAlerts.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(PendingAlertsThreads, WhatSeveralThreadsTellWhileOneShowsAndTakesBackIsNotMixedUp) {
    PendingAlerts alerts;
    std::atomic<bool> stops{false};
    const auto tell = [&](std::size_t thread) {
        while (!stops) {
            alerts.add(thread == 0 ? "first" : "second");
            std::this_thread::yield();
        }
    };
    const auto isTaken = [&alerts] {
        const auto alert = alerts.takeNext();
        EXPECT_TRUE(!alert || alert->starts_with("first") || alert->starts_with("second")) << *alert;
        return alert.has_value();
    };
    {
        const Threads tellers(2, tell);
        for (int times = 0; times < 200; times += isTaken() ? 1 : 0) {
            static_cast<void>(alerts.remove("second"));
        }
        stops = true;
    }
    for (int left = 0; left < 2; ++left) {
        static_cast<void>(isTaken());
    }
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

}  // namespace
}  // namespace quillo
