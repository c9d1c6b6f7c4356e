// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Fonts.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillo {
namespace {

TEST(Fonts, AMachineWithATypefaceWantsNothing) {
    EXPECT_EQ(requireTypefaces(), "");
    EXPECT_EQ(requireTypefaces({"Anything"}), "");
}

TEST(Fonts, AMachineWithoutOneIsToldWhatToInstall) {
    const auto missing = requireTypefaces({});
    EXPECT_TRUE(missing.contains("fonts-inter"));
    EXPECT_TRUE(missing.contains("fonts-dejavu-core"));
}

TEST(Fonts, TextIsOfTheSizeThatWasAskedFor) {
    EXPECT_NEAR(textFont(12).getHeightInPoints(), 12, 0.01);
    EXPECT_NEAR(textFont(12, true).getHeightInPoints(), 12, 0.01);
    EXPECT_NEAR(monospacedFont(12).getHeightInPoints(), 12, 0.01);
}

TEST(Fonts, BoldIsAnotherStyleOfTheSameTypeface) {
    EXPECT_EQ(textFont(12).getTypefaceName(), textFont(12, true).getTypefaceName());
    EXPECT_NE(textFont(12).getTypefaceStyle(), textFont(12, true).getTypefaceStyle());
}

TEST(Fonts, MonospacedLettersAreEquallyWide) {
    EXPECT_FLOAT_EQ(monospacedFont(12).getStringWidthFloat("iiii"),
                    monospacedFont(12).getStringWidthFloat("WWWW"));
}

/// The sign of a missing letter is a block of bars.
TEST(Fonts, ASharpSignIsNotDrawnAsTheSignOfAMissingLetter) {
    const auto picture = [](juce::juce_wchar sign) {
        juce::Image image(juce::Image::ARGB, 40, 20, true);
        juce::Graphics graphics(image);
        drawLine(graphics, juce::String::charToString(sign), image.getBounds(), 12, juce::Colours::white);
        std::vector<juce::uint32> pixels;
        for (int i = 0; i < image.getWidth() * image.getHeight(); ++i) {
            pixels.push_back(image.getPixelAt(i % image.getWidth(), i / image.getWidth()).getARGB());
        }
        return pixels;
    };
    constexpr juce::juce_wchar sharp = 0x266F;
    constexpr juce::juce_wchar inNoTypeface = 0xE123;
    EXPECT_NE(picture(sharp), picture(' '));
    EXPECT_NE(picture(sharp), picture(inNoTypeface));
}

TEST(Fonts, WiderTextIsWider) {
    EXPECT_EQ(textWidth("", 12), 0);
    EXPECT_GT(textWidth("WW", 12), textWidth("ii", 12));
    EXPECT_GT(textWidth("WW", 24), textWidth("WW", 12));
}

}  // namespace
}  // namespace quillo
