// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ConnectionKeeper.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commandline/CommandFailure.hpp"

namespace quillo {
namespace {

PortDescription source(const std::string& name, std::vector<std::string> aliases = {}) {
    return {name, std::move(aliases), true, false};
}

PortDescription target(const std::string& name, std::vector<std::string> aliases = {}) {
    return {name, std::move(aliases), false, false};
}

TEST(ConnectionKeeper, WithoutPatternsItTakesNothing) {
    ConnectionKeeper keeper({}, {});
    EXPECT_FALSE(keeper.takes(source("keys:out")));
    EXPECT_FALSE(keeper.takes(target("synth:in")));
}

TEST(ConnectionKeeper, APatternMatchesAnywhereInTheName) {
    ConnectionKeeper keeper({"Stage Piano.*MIDI 1"}, {"^synth:"});
    EXPECT_TRUE(keeper.takes(source("a2j:Stage Piano [24] (capture): Stage Piano MIDI 1")));
    EXPECT_FALSE(keeper.takes(source("a2j:Stage Piano [24] (capture): Stage Piano MIDI 2")));
    EXPECT_TRUE(keeper.takes(target("synth:in")));
    EXPECT_FALSE(keeper.takes(target("qsynth:in")));
}

TEST(ConnectionKeeper, APatternOfOneSideSaysNothingOfTheOther) {
    ConnectionKeeper keeper({"in"}, {"out"});
    EXPECT_TRUE(keeper.takes(source("keys:in")));
    EXPECT_FALSE(keeper.takes(target("keys:in")));
    EXPECT_TRUE(keeper.takes(target("synth:out")));
    EXPECT_FALSE(keeper.takes(source("synth:out")));
}

TEST(ConnectionKeeper, EachOfSeveralPatternsCounts) {
    ConnectionKeeper keeper({"pads", "keys"}, {});
    EXPECT_TRUE(keeper.takes(source("keys:out")));
    EXPECT_TRUE(keeper.takes(source("pads:out")));
    EXPECT_FALSE(keeper.takes(source("drums:out")));
}

TEST(ConnectionKeeper, AnAliasIsAsGoodAsTheName) {
    ConnectionKeeper keeper({"Launchpad"}, {});
    EXPECT_TRUE(
        keeper.takes(source("system:midi_capture_3", {"alsa_pcm:x", "alsa_pcm:Launchpad/midi_capture_1"})));
    EXPECT_FALSE(keeper.takes(source("system:midi_capture_3", {"alsa_pcm:x"})));
}

TEST(ConnectionKeeper, ThePatternIsAPOSIXExtendedRegularExpression) {
    ConnectionKeeper keeper({"^(keys|pads):[[:alpha:]]+_[0-9]{2}$"}, {});
    EXPECT_TRUE(keeper.takes(source("pads:out_12")));
    EXPECT_FALSE(keeper.takes(source("pads:out_1")));
}

TEST(ConnectionKeeper, OurOwnPortsNeverMatch) {
    ConnectionKeeper keeper({".*"}, {".*"});
    auto own = source("midi-quillo:MIDIQuillo");
    EXPECT_TRUE(keeper.takes(own));
    own.isOurs = true;
    EXPECT_FALSE(keeper.takes(own));
}

TEST(ConnectionKeeper, WhatWasConnectedWhenTheServerWentIsTakenOnce) {
    ConnectionKeeper keeper({}, {"always"});
    keeper.remember({"keys:out"}, {"synth:in"});
    EXPECT_FALSE(keeper.takes(source("synth:in")));
    EXPECT_FALSE(keeper.takes(target("keys:out")));
    EXPECT_TRUE(keeper.takes(source("keys:out")));
    EXPECT_TRUE(keeper.takes(target("synth:in")));
    EXPECT_FALSE(keeper.takes(source("keys:out")));
    EXPECT_FALSE(keeper.takes(target("synth:in")));
    EXPECT_TRUE(keeper.takes(target("always")));
}

TEST(ConnectionKeeper, WhatStillWaitsWhenTheServerGoesAgainIsNotForgotten) {
    ConnectionKeeper keeper({}, {});
    keeper.remember({"keys:out"}, {"synth:in"});
    keeper.remember({"pads:out"}, {});
    EXPECT_TRUE(keeper.takes(source("keys:out")));
    EXPECT_TRUE(keeper.takes(source("pads:out")));
    EXPECT_TRUE(keeper.takes(target("synth:in")));
}

TEST(ConnectionKeeper, WhatIsForgottenIsNotTakenAndWhatIsMissingCanBeSaved) {
    ConnectionKeeper keeper({}, {"always"});
    keeper.remember({"keys:out", "pads:out"}, {"synth:in"});
    EXPECT_TRUE(keeper.takes(source("pads:out")));
    EXPECT_EQ(keeper.missingSources(), std::set<std::string>{"keys:out"});
    EXPECT_EQ(keeper.missingTargets(), std::set<std::string>{"synth:in"});
    keeper.forget();
    EXPECT_FALSE(keeper.takes(source("keys:out")));
    EXPECT_FALSE(keeper.takes(target("synth:in")));
    EXPECT_TRUE(keeper.takes(target("always")));
}

TEST(ConnectionKeeper, AnEmptyPatternWhichWouldMatchEverythingIsAnError) {
    try {
        const ConnectionKeeper keeper({""}, {});
        ADD_FAILURE() << "an empty pattern was taken";
    } catch (const UsageError& error) {
        EXPECT_STREQ(error.what(), "option --connect-in: the pattern is empty; \".*\" matches every port");
    }
}

TEST(ConnectionKeeper, WhatIsNoRegularExpressionIsAnError) {
    for (const auto* bad : {"(", "[a", "a{2", "*"}) {
        try {
            const ConnectionKeeper keeper({"fine"}, {bad});
            ADD_FAILURE() << bad << " was taken";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr("option --connect-out: \"" + std::string(bad) +
                                                         "\" is not a regular expression"));
        }
    }
}

}  // namespace
}  // namespace quillo
