// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/WindowScale.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

double scale(const std::string& resources, double screenDPI = 0) {
    return windowScale({{}, "", resources, screenDPI});
}

TEST(WindowScale, IsOneWithoutSettings) {
    EXPECT_EQ(windowScale({}), 1);
    EXPECT_EQ(scale("", 96), 1);
}

TEST(WindowScale, FollowsXftDPIInQuarters) {
    EXPECT_EQ(scale("Xft.dpi:\t96\n"), 1);
    EXPECT_EQ(scale("Xcursor.size:\t24\nXft.dpi:\t120\nXft.hinting:\t1\n"), 1.25);
    EXPECT_EQ(scale("Xft.dpi: 144"), 1.5);
    EXPECT_EQ(scale("Xft.dpi:192"), 2);
    EXPECT_EQ(scale("Xft.dpi:\t220\n"), 2.25);
    EXPECT_EQ(scale("Xft.dpi:\t72\n"), 1);
    EXPECT_EQ(scale("Xft.dpi:\t9600\n"), 4);
}

TEST(WindowScale, FollowsTheScreenWhereNothingIsSet) {
    EXPECT_EQ(scale("", 109), 1) << "A common screen is not enlarged.";
    EXPECT_EQ(scale("", 163), 1.5);
    EXPECT_EQ(scale("", 220), 2);
    EXPECT_EQ(scale("Xft.rgba:\tnone\n", 220), 2);
    EXPECT_EQ(scale("Xft.dpi:\t96\n", 220), 1) << "What is set comes first.";
    EXPECT_EQ(scale("Xft.dpi:\tnonsense\n", 220), 2);
}

TEST(WindowScale, FollowsGDKScaleBeforeTheServer) {
    EXPECT_EQ(windowScale({{}, "2", "Xft.dpi:\t96\n", 96}), 2);
    EXPECT_EQ(windowScale({{}, "1", "Xft.dpi:\t192\n", 220}), 1);
    EXPECT_EQ(windowScale({{}, "x", "Xft.dpi:\t192\n", 96}), 2);
    EXPECT_EQ(windowScale({{}, "0", "Xft.dpi:\t192\n", 96}), 2);
    EXPECT_EQ(windowScale({{}, "99", "", 96}), 4);
}

TEST(WindowScale, IsWhatTheUserAsks) {
    EXPECT_EQ(windowScale({1.7, "2", "Xft.dpi:\t192\n", 220}), 1.7);
    EXPECT_EQ(windowScale({0.5, "", "", 96}), 0.5);
}

}  // namespace
}  // namespace quillo
