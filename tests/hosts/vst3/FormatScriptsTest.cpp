// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts that the format can carry, played through the built plug-in.
#include <gtest/gtest.h>

#include "hosts/vst3/VST3Host.hpp"

namespace quillo {
namespace {

using namespace test;

class VST3Scripts : public testing::TestWithParam<FormatScript> {};

INSTANTIATE_TEST_SUITE_P(All, VST3Scripts,
                         testing::Values(formatScript("EveryChannelMessage"), formatScript("EveryOutput"),
                                         formatScript("Loading"), formatScript("Transport"),
                                         formatScript("Dense")),
                         [](const auto& script) { return script.param.name; });

TEST_P(VST3Scripts, ThePlugInSendsWhatTheUnitSendsWhateverTheLengthsOfTheBlocks) {
    const auto& script = GetParam();
    const auto expected = playedByTheUnit(script);
    ASSERT_FALSE(expected.empty());
    for (const auto length : {1U, 2U, 64U, 512U, 1000U, 8192U}) {
        EXPECT_EQ(playedByThePlugIn(script, evenBlocks(script.end, length)), expected) << length;
    }
    for (unsigned seed = 0; seed < 10; ++seed) {
        EXPECT_EQ(playedByThePlugIn(script, randomBlocks(script.end, 2000, seed)), expected) << seed;
    }
}

}  // namespace
}  // namespace quillo
