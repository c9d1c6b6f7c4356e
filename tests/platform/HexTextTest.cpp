// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HexText.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillo {
namespace {

TEST(HexText, ShowsEachByteAsTwoDigitsPartedByBlanks) {
    const std::vector<std::uint8_t> bytes{0x00, 0x0A, 0x9F, 0xFF};
    EXPECT_EQ(hexText(bytes, HexCase::lower), "00 0a 9f ff");
    EXPECT_EQ(hexText(bytes, HexCase::upper), "00 0A 9F FF");
}

TEST(HexText, NoBytesAreNoText) {
    EXPECT_EQ(hexText({}, HexCase::lower), "");
}

}  // namespace
}  // namespace quillo
