// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RealTimeFunction.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillo {
namespace {

/// Adds up what it is called with, itself changed by each call.
struct Sum {
    int operator()(int number) QUILLO_REALTIME { return total += number; }
    int total = 0;
};

TEST(RealTimeFunctionRef, CallsTheCallableThatStaysWhereItIs) {
    Sum sum;
    const RealTimeFunctionRef<int(int)> add(sum);
    EXPECT_EQ(add(3), 3);
    EXPECT_EQ(add(4), 7);
    EXPECT_EQ(sum.total, 7);
}

TEST(RealTimeFunctionRef, HandsReferencesThroughUntouched) {
    auto increase = [](int& number) QUILLO_REALTIME { ++number; };
    const RealTimeFunctionRef<void(int&)> call(increase);
    int number = 1;
    call(number);
    EXPECT_EQ(number, 2);
}

TEST(RealTimeFunctionRef, ItsCopyCallsTheSameCallable) {
    Sum sum;
    const RealTimeFunctionRef<int(int)> add(sum);
    const auto copy = add;
    EXPECT_EQ(copy(5), 5);
    EXPECT_EQ(sum.total, 5);
}

TEST(RealTimeFunction, IsAbsentUntilGivenSomethingToCall) {
    RealTimeFunction<int(int)> function;
    EXPECT_FALSE(function);
    function = Sum{};
    EXPECT_TRUE(function);
    function = {};
    EXPECT_FALSE(function);
}

TEST(RealTimeFunction, OwnsItsCallable) {
    auto watched = std::make_shared<int>(42);
    const std::weak_ptr<int> watch = watched;
    RealTimeFunction<int()> function = [held = std::move(watched)]() QUILLO_REALTIME { return *held; };
    EXPECT_EQ(function(), 42);
    function = {};
    EXPECT_TRUE(watch.expired());
}

TEST(RealTimeFunction, ItsCopiesShareOneCallable) {
    const RealTimeFunction<int(int)> add = Sum{};
    RealTimeFunction<int(int)> copy;
    copy = add;
    EXPECT_EQ(add(1), 1);
    EXPECT_EQ(copy(2), 3);
}

TEST(RealTimeFunction, MovesWhatItIsCalledWith) {
    const RealTimeFunction<std::size_t(std::unique_ptr<int>)> take =
        [](std::unique_ptr<int> number) QUILLO_REALTIME { return number ? sizeof(*number) : 0U; };
    EXPECT_EQ(take(std::make_unique<int>(1)), sizeof(int));
}

TEST(WithoutDeadline, LetsAnAllocatingCallableStandForARealTimeOne) {
    std::vector<std::string> lines;
    const RealTimeFunction<std::size_t(const char*)> write = WithoutDeadline([&](const char* line) {
        lines.emplace_back(line);
        return lines.size();
    });
    EXPECT_EQ(write("one"), 1U);
    EXPECT_EQ(write("two"), 2U);
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two"}));
}

static_assert(noexcept(std::declval<const RealTimeFunction<int()>&>()()));
static_assert(noexcept(std::declval<const RealTimeFunctionRef<int()>&>()()));

}  // namespace
}  // namespace quillo
