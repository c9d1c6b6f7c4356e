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
    expectAsTheUnit(GetParam(), [](const auto& blocks) { return playedByThePlugIn(GetParam(), blocks); });
}

}  // namespace
}  // namespace quillo
