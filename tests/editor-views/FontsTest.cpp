// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Fonts.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "support/Pictures.hpp"

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

/// In Inter, the sign of a missing letter is a block of bars.
constexpr juce::juce_wchar inNoTypeface = 0xE123;
constexpr juce::juce_wchar sharp = 0x266F;
constexpr juce::juce_wchar flat = 0x266D;
constexpr juce::juce_wchar hiraganaA = 0x3042;
constexpr juce::juce_wchar kanjiSound = 0x97F3;
constexpr juce::juce_wchar grin = 0x1F600;

using Draw = std::function<void(juce::Graphics&, const juce::String&, juce::Rectangle<int>)>;

std::vector<juce::uint32> signPicture(juce::juce_wchar sign, const Draw& draw) {
    juce::Image image(juce::Image::ARGB, 40, 20, true);
    juce::Graphics graphics(image);
    graphics.setColour(juce::Colours::white);
    draw(graphics, juce::String::charToString(sign), image.getBounds());
    std::vector<juce::uint32> pixels;
    for (int i = 0; i < image.getWidth() * image.getHeight(); ++i) {
        pixels.push_back(image.getPixelAt(i % image.getWidth(), i / image.getWidth()).getARGB());
    }
    return pixels;
}

void expectDrawn(const Draw& draw) {
    for (const auto sign : {sharp, flat, hiraganaA, kanjiSound, grin}) {
        SCOPED_TRACE(static_cast<int>(sign));
        EXPECT_NE(signPicture(sign, draw), signPicture(' ', draw));
        EXPECT_NE(signPicture(sign, draw), signPicture(inNoTypeface, draw));
    }
    EXPECT_NE(signPicture(sharp, draw), signPicture(flat, draw));
    EXPECT_NE(signPicture(hiraganaA, draw), signPicture(kanjiSound, draw));
}

TEST(Fonts, SignsThatInterLacksAreDrawnFromTypefacesThatHaveThem) {
    expectDrawn([](auto& graphics, const auto& text, auto area) {
        drawLine(graphics, text, area, 12, juce::Colours::white);
    });
}

TEST(Fonts, SoAreTheyInBoldAndInATextLayout) {
    expectDrawn([](auto& graphics, const auto& text, auto area) {
        graphics.setFont(textFont(12, true));
        graphics.drawText(text, area, juce::Justification::centredLeft, true);
    });
    expectDrawn([](auto& graphics, const auto& text, auto area) {
        juce::AttributedString line;
        line.append(text, textFont(12), juce::Colours::white);
        line.draw(graphics, area.toFloat());
    });
}

TEST(Fonts, SignsFromOtherTypefacesAreAsLargeAsTheTextAroundThem) {
    const auto width = textFont(100).getStringWidthFloat(juce::String::charToString(hiraganaA));
    EXPECT_NEAR(width, 100, 25);
    EXPECT_NE(width, textFont(100).getStringWidthFloat(juce::String::charToString(inNoTypeface)));
}

TEST(Fonts, LettersThatInterHasAreItsOwn) {
    const juce::Font plain("Inter", "Regular", 12);
    ASSERT_EQ(plain.getTypefacePtr()->getName(), "Inter") << "fonts-inter is not installed";
    const auto font = textFont(12).withHeight(12);
    for (const auto* text : {"Mod wheel", "250", "Gr\u00F6\u00DFe", "\u2192"}) {
        EXPECT_FLOAT_EQ(font.getStringWidthFloat(juce::CharPointer_UTF8(text)),
                        plain.getStringWidthFloat(juce::CharPointer_UTF8(text)));
    }
}

TEST(Fonts, WhatOnlyChoosesTheFormOfASignTakesNoRoom) {
    const juce::String heart(juce::CharPointer_UTF8("\u2665"));
    const juce::String redHeart(juce::CharPointer_UTF8("\u2665\uFE0F"));
    EXPECT_FLOAT_EQ(textFont(12).getStringWidthFloat(redHeart), textFont(12).getStringWidthFloat(heart));
}

TEST(Fonts, LinesOfDifferentFontsStandOnOneBaseline) {
    const auto bottom = [](const juce::Font& font, juce::Rectangle<float> area) {
        juce::Image image(juce::Image::RGB, 40, 60, true);
        juce::Graphics graphics(image);
        graphics.setColour(juce::Colours::white);
        graphics.setFont(font);
        graphics.drawText("E", area, juce::Justification::centredLeft, false);
        return test::boundsOfPixelsLike(image, {255, 255, 255}, image.getBounds()).getBottom();
    };
    const juce::Rectangle<int> area(0, 10, 40, 40);
    const auto large = textFont(30);
    for (const auto& small : {textFont(10), textFont(12, true), monospacedFont(14)}) {
        EXPECT_NEAR(bottom(small, onBaseline(area, small, large)), bottom(large, area.toFloat()), 1);
        EXPECT_LT(bottom(small, area.toFloat()), bottom(large, area.toFloat()) - 2);
    }
}

TEST(Fonts, WiderTextIsWider) {
    EXPECT_EQ(textWidth("", 12), 0);
    EXPECT_GT(textWidth("WW", 12), textWidth("ii", 12));
    EXPECT_GT(textWidth("WW", 24), textWidth("WW", 12));
}

}  // namespace
}  // namespace quillo
