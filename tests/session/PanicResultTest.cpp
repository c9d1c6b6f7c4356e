// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/RenderRequests.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(PanicResult, InWordsSaysWhatThereWas) {
    EXPECT_EQ(inWords({3, 1, 12}), "Stopped 3 notes, let go of 1 pedal, cancelled 12 waiting messages");
    EXPECT_EQ(inWords({1, 2, 1}), "Stopped 1 note, let go of 2 pedals, cancelled 1 waiting message");
    EXPECT_EQ(inWords({1, 0, 0}), "Stopped 1 note");
    EXPECT_EQ(inWords({0, 2, 0}), "Let go of 2 pedals");
    EXPECT_EQ(inWords({0, 0, 2}), "Cancelled 2 waiting messages");
    EXPECT_EQ(inWords({0, 0, 0}), "Nothing was sounding");
}

}  // namespace
}  // namespace quillo
