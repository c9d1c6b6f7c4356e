// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "session/PendingAlerts.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

TEST(PendingAlertsThreads, WhatSeveralThreadsTellWhileOneShowsAndTakesBackIsNotMixedUp) {
    PendingAlerts alerts;
    const auto tell = [&alerts](std::size_t thread) {
        for (int i = 0; i < 2000; ++i) {
            alerts.add(thread == 0 ? "first" : "second");
        }
    };
    const auto take = [&alerts] {
        if (const auto alert = alerts.takeNext()) {
            EXPECT_TRUE(alert->starts_with("first") || alert->starts_with("second")) << *alert;
        }
    };
    {
        const Threads tellers(2, tell);
        for (int i = 0; i < 2000; ++i) {
            take();
            static_cast<void>(alerts.remove("second"));
        }
    }
    take();
    take();
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

}  // namespace
}  // namespace quillo
