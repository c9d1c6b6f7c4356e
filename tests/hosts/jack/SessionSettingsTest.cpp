// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionSettings.hpp"

#include <gtest/gtest.h>

#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

class SessionSettingsTest : public testing::Test {
protected:
    SessionSettings readBack(const SessionSettings& settings) {
        writeSettings(file, settings);
        return readSettings(file);
    }

    TemporaryFolder folder;
    const std::filesystem::path file = folder / "band.settings";
};

TEST_F(SessionSettingsTest, ComeBackAsTheyWere) {
    const SessionSettings settings{{"a2j:Stage Piano [24] (capture): Stage Piano MIDI 1", "pads:\xC3\xA4"},
                                   {"synth:in", " two  blanks "},
                                   {true, "10 20 300 400", "/home/me/my presets"}};
    EXPECT_EQ(readBack(settings), settings);
    EXPECT_EQ(readBack({}), SessionSettings());
}

TEST_F(SessionSettingsTest, AreALineEach) {
    writeSettings(file, {{"keys:out"}, {"synth:in"}, {true, "10 20 300 400", "/home/me"}});
    const auto bytes = readWholeFile(file);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
              "source keys:out\ntarget synth:in\nwindow shown\nplace 10 20 300 400\npresets /home/me\n");
}

TEST_F(SessionSettingsTest, AValueThatTakesTwoLinesIsLeftOut) {
    EXPECT_EQ(readBack({{"keys:out\nwindow shown", "pads:out"}, {}, {}}),
              (SessionSettings{{"pads:out"}, {}, {}}));
}

TEST_F(SessionSettingsTest, WhatCannotBeReadIsAsAtFirst) {
    EXPECT_EQ(readSettings(file), SessionSettings());
    writeWholeFile(file, std::vector<std::uint8_t>{'x', '\n', 'n', 'o', ' ', 'n', 'o', '\n', 0},
                   Existing::keep);
    EXPECT_EQ(readSettings(file), SessionSettings());
}

}  // namespace
}  // namespace quillo
