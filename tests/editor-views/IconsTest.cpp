// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Icons.hpp"

#include <gtest/gtest.h>

#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr IconName recoloured[] = {
    IconName::dragHandle, IconName::pickerOpen, IconName::arrowDown,  IconName::arrowUp, IconName::clear,
    IconName::more,       IconName::exportFile, IconName::importFile, IconName::undo,    IconName::redo};

juce::Image drawn(IconName icon, int edge, MyRGB colour) {
    juce::Image image(juce::Image::ARGB, edge, edge, true);
    juce::Graphics graphics(image);
    drawIcon(graphics, icon, image.getBounds().toFloat(), displayColour(colour));
    return image;
}

TEST(Icons, EachIsThereAtEverySizeInTheGivenColour) {
    const MyRGB colour{188, 243, 117};
    for (const auto icon : recoloured) {
        for (const int edge : {16, 20, 24, 32, 48}) {
            EXPECT_GT(pixelsLike(drawn(icon, edge, colour), colour), edge / 4) << static_cast<int>(icon);
        }
    }
}

TEST(Icons, NoTwoAreAlike) {
    for (const auto left : recoloured) {
        for (const auto right : recoloured) {
            EXPECT_EQ(sameSight(drawn(left, 32, {255, 255, 255}), drawn(right, 32, {255, 255, 255})),
                      left == right);
        }
    }
}

TEST(Icons, TheyStayInsideTheirArea) {
    juce::Image image(juce::Image::ARGB, 64, 64, true);
    juce::Graphics graphics(image);
    for (const auto icon : recoloured) {
        drawIcon(graphics, icon, {16, 16, 32, 32}, juce::Colours::white);
    }
    for (int along = 0; along < 64; ++along) {
        EXPECT_TRUE(image.getPixelAt(along, 14).isTransparent());
        EXPECT_TRUE(image.getPixelAt(along, 50).isTransparent());
        EXPECT_TRUE(image.getPixelAt(14, along).isTransparent());
        EXPECT_TRUE(image.getPixelAt(50, along).isTransparent());
    }
}

TEST(Icons, TheLogoKeepsItsColours) {
    const auto logo = drawn(IconName::logo, 50, {255, 255, 255});
    EXPECT_TRUE(sameSight(logo, drawn(IconName::logo, 50, {0, 0, 0})));
    EXPECT_GT(pixelsLike(logo, {180, 117, 243}), 5);
    EXPECT_EQ(pixelsLike(logo, {255, 255, 255}), 0);
}

}  // namespace
}  // namespace quillo
