// SPDX-License-Identifier: GPL-3.0-or-later
// The presets of the guide's recipes, each played as the guide says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "offline/OfflineHost.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/InStableOrder.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using fixture::hex;

/// Milliseconds, and the message in hexadecimal digits.
using Moment = std::pair<SampleTime, std::string>;

constexpr SampleTime samplesPerMillisecond = 48;

std::vector<TimedMessage> messagesAt(const std::vector<Moment>& moments) {
    std::vector<TimedMessage> messages;
    for (const auto& [milliseconds, bytes] : moments) {
        messages.push_back({milliseconds * samplesPerMillisecond, MIDIMessage::copyOf(hex(bytes))});
    }
    return messages;
}

/// What leaves in the order of time when a recipe's preset is played with `moments`, the transport moving
/// from 0 to `end` milliseconds.
std::vector<TimedMessage> played(const std::string& preset, const std::vector<Moment>& moments,
                                 SampleTime end) {
    OfflineHost host({}, PluginData::read(readWholeFile(std::string(QUILLO_PRESETS) + "/" + preset)).rules);
    return inStableOrder(host.play(messagesAt(moments), end * samplesPerMillisecond).outputs,
                         &TimedMessage::time);
}

TEST(Recipes, ThePedalSustainsAndSelectsTheStrings) {
    EXPECT_EQ(played("pedal-to-strings.json", {{10, "b0 40 7f"}, {20, "90 3c 64"}, {30, "b0 40 00"}}, 40),
              messagesAt({{10, "b0 00 00"},
                          {10, "c0 30"},
                          {10, "b0 40 7f"},
                          {20, "90 3c 64"},
                          {30, "b0 00 00"},
                          {30, "c0 00"},
                          {30, "b0 40 00"}}));
}

TEST(Recipes, APedalHalfwayDownSelectsNothing) {
    EXPECT_EQ(played("pedal-to-strings.json", {{10, "b0 40 3f"}}, 20), messagesAt({{10, "b0 40 3f"}}));
}

TEST(Recipes, TheSoundsComeWithTheTransportAndSilenceWithItsStop) {
    EXPECT_EQ(played("sounds-at-start.json", {{50, "90 3c 64"}}, 100), messagesAt({{0, "b0 00 00"},
                                                                                   {0, "c0 00"},
                                                                                   {0, "b1 00 00"},
                                                                                   {0, "c1 21"},
                                                                                   {0, "b2 00 01"},
                                                                                   {0, "c2 30"},
                                                                                   {50, "90 3c 64"},
                                                                                   {100, "b0 7b 00"},
                                                                                   {100, "b1 7b 00"},
                                                                                   {100, "b2 7b 00"}}));
}

TEST(Recipes, TheLeftHandPlaysTheBassOnItsOwnChannelOnly) {
    EXPECT_EQ(played("bass-split.json",
                     {{10, "90 24 64"}, {11, "90 3c 65"}, {20, "80 24 40"}, {21, "80 3c 41"}}, 30),
              messagesAt({{0, "b1 00 00"},
                          {0, "c1 20"},
                          {0, "b0 00 00"},
                          {0, "c0 00"},
                          {10, "91 24 64"},
                          {11, "90 3c 65"},
                          {20, "81 24 40"},
                          {21, "80 3c 41"}}));
}

TEST(Recipes, EveryKeySoundsAnOctaveHigherAsWell) {
    EXPECT_EQ(played("octave-doubled.json",
                     {{10, "90 15 64"}, {11, "90 6c 65"}, {20, "80 15 40"}, {21, "80 6c 41"}}, 30),
              messagesAt({{10, "90 21 64"},
                          {10, "90 15 64"},
                          {11, "90 78 65"},
                          {11, "90 6c 65"},
                          {20, "80 21 40"},
                          {20, "80 15 40"},
                          {21, "80 78 41"},
                          {21, "80 6c 41"}}));
}

TEST(Recipes, ThePadsPlayTheDrumsAnOctaveHigherAndNothingElseMoves) {
    EXPECT_EQ(
        played("pads-an-octave-up.json",
               {{10, "99 24 64"}, {11, "99 33 65"}, {12, "99 34 66"}, {20, "89 24 40"}, {21, "90 24 41"}},
               30),
        messagesAt(
            {{10, "99 30 64"}, {11, "99 3f 65"}, {12, "99 34 66"}, {20, "89 30 40"}, {21, "90 24 41"}}));
}

/// How many cards each recipe has.
TEST(Recipes, OfRangesAreAFewCards) {
    const auto cards = [](const std::string& preset) {
        return runsOf(PluginData::read(readWholeFile(std::string(QUILLO_PRESETS) + "/" + preset)).rules)
            .size();
    };
    EXPECT_EQ(cards("bass-split.json"), 4);
    EXPECT_EQ(cards("octave-doubled.json"), 2);
    EXPECT_EQ(cards("pads-an-octave-up.json"), 2);
}

TEST(Recipes, TheSynthesizerIsResetAtLoadAndHasItsSoundASecondAndAHalfLater) {
    EXPECT_EQ(
        played("reset-then-sound.json", {}, 10),
        messagesAt({{0, "f0 7e 7f 09 01 f7"}, {1500, "b0 00 00"}, {1500, "c0 58"}, {1510, "b0 07 64"}}));
}

TEST(Recipes, EachNoteHasTwoEchoesOfItsOwnLength) {
    EXPECT_EQ(played("echo.json", {{100, "90 3c 64"}, {150, "80 3c 40"}}, 200),
              messagesAt({{0, "b1 07 46"},
                          {0, "b2 07 2d"},
                          {100, "90 3c 64"},
                          {150, "80 3c 40"},
                          {400, "91 3c 64"},
                          {450, "81 3c 40"},
                          {700, "92 3c 64"},
                          {750, "82 3c 40"}}));
}

/// A line in which each note is struck again, or followed by its neighbour, on the tick of its release, as
/// sequencers write it: release first.
TEST(Recipes, TheEchoesOfAReleaseAndANewStrokeOnOneTickKeepTheirOrder) {
    std::vector<Moment> line{{0, "90 3c 64"}, {0, "90 40 64"}};
    std::vector<Moment> echoed;
    for (SampleTime time = 25; time < 250; time += 25) {
        for (const auto* bytes : {"80 3c 40", "80 40 40", "90 3c 64", "90 40 64"}) {
            line.emplace_back(time, bytes);
            echoed.emplace_back(time, bytes);
        }
    }
    std::vector<TimedMessage> echoes;
    for (const auto& output : played("echo.json", line, 300)) {
        const auto bytes = output.message.bytes();
        const auto heard = output.time - 600 * samplesPerMillisecond;
        if (heard > 0 && ((bytes[0] & 0x0F) == 2)) {
            echoes.push_back(
                {heard, MIDIMessage{static_cast<std::uint8_t>(bytes[0] & 0xF0), bytes[1], bytes[2]}});
        }
    }
    EXPECT_EQ(echoes, messagesAt(echoed));
}

TEST(Recipes, CanBeMadeInTheEditorAsTheyAre) {
    for (const auto* preset :
         {"demo.json", "pedal-to-strings.json", "sounds-at-start.json", "bass-split.json",
          "octave-doubled.json", "pads-an-octave-up.json", "reset-then-sound.json", "echo.json"}) {
        const auto document = PluginData::read(readWholeFile(std::string(QUILLO_PRESETS) + "/" + preset));
        for (const auto& rule : document.rules) {
            EXPECT_EQ(ruleFromEntry(entryFromRule(rule)), rule) << preset << ", " << rule.name;
        }
    }
}

}  // namespace
}  // namespace quillo
