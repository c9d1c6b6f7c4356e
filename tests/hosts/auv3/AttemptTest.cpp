// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/Failure.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "hosts/auv3/Failures.hpp"

namespace quillo {
namespace {

using test::failed;

TEST(Attempt, AnOperationThatSucceedsHasNone) {
    int ran = 0;
    EXPECT_EQ(attempt([&] { ++ran; }), std::nullopt);
    EXPECT_EQ(ran, 1);
}

TEST(Attempt, AnExceptionBecomesAnErrorWithItsWords) {
    EXPECT_EQ(attempt([] { throw std::runtime_error("too late"); }), failed(-10875, "too late"));
}

TEST(Attempt, WhateverElseIsThrownBecomesAnErrorToo) {
    EXPECT_EQ(attempt([] { throw 7; }), failed(-10875, "an unknown error"));
}

}  // namespace
}  // namespace quillo
