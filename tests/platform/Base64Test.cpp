// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Base64.hpp"

#include <gtest/gtest.h>

#include <string_view>

namespace quillo {
namespace {

Data bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(Base64, DecodesEveryLengthOfALastGroup) {
    EXPECT_EQ(decodeBase64(""), Data());
    EXPECT_EQ(decodeBase64("Zg=="), bytesOf("f"));
    EXPECT_EQ(decodeBase64("Zm8="), bytesOf("fo"));
    EXPECT_EQ(decodeBase64("Zm9v"), bytesOf("foo"));
    EXPECT_EQ(decodeBase64("Zm9vYg=="), bytesOf("foob"));
}

TEST(Base64, DecodesEveryCharacterOfTheAlphabet) {
    const auto bytes = decodeBase64("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
    ASSERT_TRUE(bytes);
    unsigned value = 0;
    for (std::size_t group = 0; group < 16; ++group) {
        const unsigned bits = (unsigned{(*bytes)[group * 3]} << 16U) |
                              (unsigned{(*bytes)[group * 3 + 1]} << 8U) | (*bytes)[group * 3 + 2];
        for (unsigned shift = 24; shift > 0; ++value) {
            shift -= 6;
            EXPECT_EQ((bits >> shift) & 63U, value);
        }
    }
    EXPECT_EQ(value, 64U);
}

TEST(Base64, DecodesBytesThatAreNoText) {
    EXPECT_EQ(decodeBase64("AP/+gA=="), (Data{0x00, 0xFF, 0xFE, 0x80}));
}

TEST(Base64, RejectsOtherText) {
    for (const auto* text : {"Zg", "Zg=", "Zg===", "Zm9v=", "====", "=", "Z===", "Zm9v Zm9v", "Zm9v\n",
                             "Zm-_", "Zg==Zg==", "Z=8=", "Zm9\xC3"}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

TEST(Base64, RejectsBitsBehindTheLastByte) {
    EXPECT_EQ(decodeBase64("Zh=="), std::nullopt);
    EXPECT_EQ(decodeBase64("Zm9="), std::nullopt);
}

TEST(Base64, WhatIsEncodedIsDecodedByteForByteWhateverTheLength) {
    EXPECT_EQ(encodeBase64(bytesOf("foob")), "Zm9vYg==");
    EXPECT_EQ(encodeBase64(bytesOf("fooba")), "Zm9vYmE=");
    Data bytes;
    for (unsigned value = 0; value < 600; ++value) {
        EXPECT_EQ(decodeBase64(encodeBase64(bytes)), bytes);
        bytes.push_back(static_cast<std::uint8_t>(value * 37));
    }
}

}  // namespace
}  // namespace quillo
