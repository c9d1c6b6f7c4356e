// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Observers.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "support/Threads.hpp"

namespace quillo {
namespace {

using testing::ElementsAre;

TEST(Observers, AreCalledInTheOrderInWhichTheyCame) {
    Observers observers;
    std::vector<int> calls;
    const auto first = observers.add([&] { calls.push_back(1); });
    const auto second = observers.add([&] { calls.push_back(2); });
    const auto third = observers.add([&] { calls.push_back(3); });
    observers.notify();
    EXPECT_THAT(calls, ElementsAre(1, 2, 3));
}

TEST(Observers, MayBeAbsent) {
    Observers observers;
    EXPECT_NO_THROW(observers.notify());
}

TEST(Observers, AreNotCalledOnceTheObservationIsDropped) {
    Observers observers;
    std::vector<int> calls;
    auto first = observers.add([&] { calls.push_back(1); });
    const auto second = observers.add([&] { calls.push_back(2); });
    first.reset();
    observers.notify();
    EXPECT_THAT(calls, ElementsAre(2));
}

TEST(Observers, AreCalledAsLongAsACopyOfTheObservationLives) {
    Observers observers;
    int calls = 0;
    auto observation = observers.add([&] { ++calls; });
    const auto copy = observation;
    observation.reset();
    observers.notify();
    EXPECT_EQ(calls, 1);
}

TEST(Observers, ADropDuringANotificationCountsFromTheNextOne) {
    Observers observers;
    std::vector<int> calls;
    Observation second;
    const auto first = observers.add([&] {
        calls.push_back(1);
        second.reset();
    });
    second = observers.add([&] { calls.push_back(2); });
    observers.notify();
    EXPECT_THAT(calls, ElementsAre(1, 2));
    observers.notify();
    EXPECT_THAT(calls, ElementsAre(1, 2, 1));
}

TEST(Observers, WhoComesDuringANotificationWaitsForTheNextOne) {
    Observers observers;
    std::vector<int> calls;
    Observation second;
    const auto first = observers.add([&] {
        calls.push_back(1);
        second = observers.add([&] { calls.push_back(2); });
    });
    observers.notify();
    EXPECT_THAT(calls, ElementsAre(1));
}

TEST(Observers, AreLetGoWithTheirObservation) {
    Observers observers;
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = held;
    auto observation = observers.add([held = std::move(held)] { ++*held; });
    EXPECT_FALSE(watch.expired());
    observation.reset();
    EXPECT_TRUE(watch.expired());
}

TEST(Observers, ComeAndGoWhileAnotherThreadNotifies) {
    Observers observers;
    std::atomic<int> lasting = 0;
    std::atomic<int> passing = 0;
    const auto observation = observers.add([&] { ++lasting; });
    constexpr int rounds = 1000;
    {
        const JoinedThread notifier([&] {
            for (int i = 0; i < rounds; ++i) {
                observers.notify();
            }
        });
        for (int i = 0; i < rounds; ++i) {
            const auto brief = observers.add([&] { ++passing; });
        }
    }
    EXPECT_EQ(lasting, rounds);
    const auto before = passing.load();
    observers.notify();
    EXPECT_EQ(passing, before);
}

}  // namespace
}  // namespace quillo
