// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleOutputV2.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(StatusV2, EachCaseHasItsNibble) {
    EXPECT_EQ(statusNibble(StatusV2::noteOn), 0x90);
    EXPECT_EQ(statusNibble(StatusV2::noteOff), 0x80);
    EXPECT_EQ(statusNibble(StatusV2::CC), 0xB0);
    EXPECT_EQ(statusNibble(StatusV2::programChange), 0xC0);
    EXPECT_EQ(statusNibble(StatusV2::channelPressure), 0xD0);
    EXPECT_EQ(statusNibble(StatusV2::pitchWheel), 0xE0);
}

}  // namespace
}  // namespace quillo
