// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/PendingAlerts.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(PendingAlerts, ComeOneAfterTheOther) {
    PendingAlerts alerts;
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
    alerts.add("first");
    alerts.add("second");
    EXPECT_EQ(alerts.takeNext(), "first");
    EXPECT_EQ(alerts.takeNext(), "second");
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

TEST(PendingAlerts, TheSameWordsAreOneAlertWithTheirCount) {
    PendingAlerts alerts;
    for (int i = 0; i < 20000; ++i) {
        alerts.add("damaged");
    }
    alerts.add("other");
    EXPECT_EQ(alerts.takeNext(), "damaged\n\n(20000 times)");
    EXPECT_EQ(alerts.takeNext(), "other");
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

TEST(PendingAlerts, OfVeryManyOnlyTheNumberIsKept) {
    PendingAlerts alerts;
    for (int i = 0; i < 20000; ++i) {
        alerts.add(std::to_string(i));
    }
    for (std::size_t i = 0; i < PendingAlerts::most; ++i) {
        EXPECT_EQ(alerts.takeNext(), std::to_string(i));
    }
    EXPECT_EQ(alerts.takeNext(), "There were 19992 more alerts.");
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

TEST(PendingAlerts, OneThatIsLeftOutIsOneAlert) {
    PendingAlerts alerts;
    for (std::size_t i = 0; i <= PendingAlerts::most; ++i) {
        alerts.add(std::to_string(i));
    }
    for (std::size_t i = 0; i < PendingAlerts::most; ++i) {
        static_cast<void>(alerts.takeNext());
    }
    EXPECT_EQ(alerts.takeNext(), "There was 1 more alert.");
}

TEST(PendingAlerts, OfALongOneTheBeginningIsKeptInWholeCharacters) {
    PendingAlerts alerts;
    const std::string even(PendingAlerts::longest, 'a');
    alerts.add(even + "b");
    EXPECT_EQ(alerts.takeNext(), even);
    const std::string odd(PendingAlerts::longest - 1, 'a');
    alerts.add(odd + "\u00e9" + even);
    EXPECT_EQ(alerts.takeNext(), odd);
}

TEST(PendingAlerts, WhatIsNoLongerTrueIsTakenBack) {
    PendingAlerts alerts;
    alerts.add("first");
    alerts.add("second");
    alerts.add("first");
    EXPECT_EQ(alerts.remove("first"), std::nullopt);
    EXPECT_EQ(alerts.remove("third"), std::nullopt);
    EXPECT_EQ(alerts.takeNext(), "second");
    EXPECT_EQ(alerts.takeNext(), std::nullopt);
}

}  // namespace
}  // namespace quillo
