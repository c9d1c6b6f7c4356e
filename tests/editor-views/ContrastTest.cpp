// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor/Style.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr double readable = 4.5;

TEST(Contrast, OfKnownPairs) {
    EXPECT_NEAR(contrast({0, 0, 0}, {255, 255, 255}), 21, 0.01);
    EXPECT_NEAR(contrast({10, 20, 30}, {10, 20, 30}), 1, 0.01);
    EXPECT_NEAR(contrast({119, 119, 119}, {255, 255, 255}), 4.48, 0.01);
}

TEST(Contrast, EveryValueCanBeReadOnEveryGround) {
    const Palette palette;
    const auto card = style::lifted(palette.background, style::cardLift);
    const MyRGB grounds[] = {palette.background, card, style::lifted(card, style::boxLift),
                             style::lifted(card, style::buttonHoverLift),
                             style::lifted(palette.background, style::menuLift)};
    const MyRGB texts[] = {palette.primaryText,     palette.typeInput,       palette.channelInput,
                           palette.midi2dByteInput, palette.midi3dByteInput, palette.triggerInput,
                           palette.delayInput};
    for (const auto ground : grounds) {
        for (const auto text : texts) {
            EXPECT_GE(contrast(text, ground), readable)
                << int{text.r} << ' ' << int{text.g} << ' ' << int{text.b} << " on " << int{ground.r};
        }
    }
}

TEST(Contrast, SecondaryTextCanBeReadOnTheEditorAndOnCards) {
    const Palette palette;
    EXPECT_GE(contrast(palette.secondaryText, palette.background), readable);
    EXPECT_GE(contrast(palette.secondaryText, style::lifted(palette.background, style::cardLift)), readable);
    EXPECT_GE(
        contrast(palette.secondaryText, style::lifted(palette.background, style::cardLift + style::boxLift)),
        readable);
}

}  // namespace
}  // namespace quillo
