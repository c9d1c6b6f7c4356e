// SPDX-License-Identifier: GPL-3.0-or-later
// The line about the server in the whole editor, without a server and without a display.
#include "hosts/jack/ServerBar.hpp"

#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/JuceText.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

PortDescription source(std::string name, Names aliases = {}) {
    return {std::move(name), std::move(aliases), true, false};
}

PortDescription target(std::string name) {
    return {std::move(name), {}, false, false};
}

TEST(ServerBarWords, APortIsCalledByItsClientAndADeviceByItself) {
    EXPECT_EQ(shortName(source("fluidsynth:midi_00")), "fluidsynth");
    EXPECT_EQ(shortName(source("Piano")), "Piano");
    EXPECT_EQ(shortName(source("system:midi_capture_2", {"alsa_pcm:nanoKEY/midi_capture_1"})), "nanoKEY");
    EXPECT_EQ(shortName(source("system:midi_capture_2")), "midi_capture_2");
    EXPECT_EQ(shortName(source("a2j:nanoKEY [20] (capture): nanoKEY MIDI 1")), "nanoKEY");
    EXPECT_EQ(shortName(source("Midi-Bridge:nanoKEY 1:(capture_0) nanoKEY MIDI 1")), "nanoKEY 1");
}

TEST(ServerBarWords, SayTheServerItsRateAndWhatIsConnected) {
    const ServerStatus status{
        "default",
        48000,
        {{source("keys:out"), true}, {source("pads:out"), false}},
        {{target("synth:a"), true}, {target("synth:b"), true}, {target("organ:in"), true}}};
    EXPECT_EQ(inWords(status), "JACK default · 48,000 Hz · hears keys · sends to synth, organ");
    EXPECT_EQ(inWords(ServerStatus{"studio", 96000, {}, {}}),
              "JACK studio · 96,000 Hz · hears nothing · sends to nothing");
    EXPECT_EQ(inWords(std::nullopt), "No JACK server. MIDI Quillo waits for one.");
}

TEST(ServerBarWords, WhatCannotBeSeenIsEscaped) {
    const ServerStatus status{"a\x1B[31m", 1, {{source("b\n:out"), true}}, {}};
    EXPECT_EQ(inWords(status), "JACK a\\u001b[31m · 1 Hz · hears b\\n · sends to nothing");
}

/// The bar in the editor over a server that the test plays.
class ServerBarTest : public testing::Test {
protected:
    ServerBarTest() {
        auto made = std::make_unique<ServerBar>(ServerBar::Actions{
            [this] { return server; },
            [this](const PortDescription& port, bool connected) { asked.emplace_back(port.name, connected); },
            [this] { return isAwaited; }});
        bar = made.get();
        stage.view().setStatusBar(std::move(made));
    }

    void openMenu() { click(bar->connectButton()); }
    [[nodiscard]] bool isOpen() { return stage.view().overlay() != nullptr; }
    void clickRow(std::size_t row) { click(stage.menu(), stage.menu().rowArea(row).getCentre()); }
    /// How much of a row is drawn at its end, where its tick is.
    int tick(std::size_t row) {
        auto end = stage.menu().rowArea(row);
        return pixelsLike(picture(stage.menu(), 2), Palette().primaryText, end.removeFromRight(20) * 2);
    }

    /// The menu's rows are: Hear: / keys / pads / Send to: / synth.
    std::optional<ServerStatus> server{ServerStatus{"default",
                                                    48000,
                                                    {{source("keys:out"), true}, {source("pads:out"), false}},
                                                    {{target("synth:in"), false}}}};
    bool isAwaited = true;
    std::vector<std::pair<std::string, bool>> asked;
    ServerBar* bar = nullptr;
    EditorStage stage;
};

TEST_F(ServerBarTest, StandsBetweenTheHeaderAndTheList) {
    EXPECT_EQ(bar->getY(), stage.view().header().getBottom());
    EXPECT_EQ(bar->getBottom(), stage.view().list().getY());
    EXPECT_EQ(bar->getWidth(), stage.view().getWidth());
    EXPECT_EQ(bar->text(), juceText("JACK default · 48,000 Hz · hears keys · sends to nothing"));
}

TEST_F(ServerBarTest, FollowsTheServer) {
    server->targets[0].isConnected = true;
    bar->refresh();
    EXPECT_TRUE(bar->text().endsWith("sends to synth"));
    EXPECT_TRUE(bar->connectButton().isEnabled());
    server.reset();
    bar->refresh();
    EXPECT_TRUE(bar->text().startsWith("No JACK server"));
    EXPECT_FALSE(bar->connectButton().isEnabled());
    isAwaited = false;
    bar->refresh();
    EXPECT_EQ(bar->text(), "No project is open.");
}

TEST_F(ServerBarTest, TheMenuTicksWhatIsConnectedAndPickingTurnsItRound) {
    openMenu();
    EXPECT_GT(tick(1), 0);
    EXPECT_EQ(tick(2), 0);
    clickRow(4);
    clickRow(1);
    clickRow(2);
    EXPECT_EQ(asked, (std::vector<std::pair<std::string, bool>>{
                         {"synth:in", true}, {"keys:out", false}, {"pads:out", true}}));
    EXPECT_TRUE(isOpen());
    server->sources[1].isConnected = true;
    bar->refresh();
    clickRow(2);
    EXPECT_EQ(asked.back(), (std::pair<std::string, bool>{"pads:out", false}));
}

TEST_F(ServerBarTest, TitlesAreNotPicked) {
    openMenu();
    clickRow(0);
    clickRow(3);
    EXPECT_TRUE(asked.empty());
}

TEST_F(ServerBarTest, APortThatAppearsWhileTheMenuIsOpenIsOfferedAndTheHighlightStays) {
    openMenu();
    type(stage.window, "synth");
    EXPECT_EQ(stage.menu().highlightedRow(), 4U);
    server->sources.insert(server->sources.begin(), {source("drums:out"), false});
    server->targets.push_back({target("synth2:in"), false});
    bar->refresh();
    EXPECT_EQ(stage.menu().highlightedRow(), 5U);
    EXPECT_EQ(stage.menu().shownRows(), (std::vector<std::size_t>{5, 6}));
    stage.press(juce::KeyPress::returnKey);
    EXPECT_EQ(asked.back(), (std::pair<std::string, bool>{"synth:in", true}));
}

TEST_F(ServerBarTest, TheMenuClosesWhenTheServerGoes) {
    openMenu();
    server.reset();
    bar->refresh();
    EXPECT_FALSE(isOpen());
}

TEST_F(ServerBarTest, IsUsedByKeysFromAWindowThatWasJustOpened) {
    ASSERT_TRUE(stage.tabTo("Connect"));
    stage.press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.menu().highlightedRow(), 1U);
    stage.press(juce::KeyPress::downKey);
    stage.press(juce::KeyPress::spaceKey);
    EXPECT_EQ(asked, (std::vector<std::pair<std::string, bool>>{{"pads:out", true}}));
    EXPECT_TRUE(isOpen());
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(EditorStage::focus(), "Connect");
}

TEST_F(ServerBarTest, SaysWhenThereIsNothingToConnectTo) {
    server->sources.clear();
    bar->refresh();
    openMenu();
    type(stage.window, "nothing is there");
    EXPECT_EQ(stage.menu().shownRows().size(), 1U);
    stage.press(juce::KeyPress::returnKey);
    EXPECT_TRUE(asked.empty());
}

TEST_F(ServerBarTest, LeavesTheButtonItsRoomInTheSmallestWindow) {
    stage.view().setSize(200, 200);
    EXPECT_TRUE(bar->getLocalBounds().contains(bar->connectButton().getBounds()));
    EXPECT_EQ(bar->connectButton().getWidth(), bar->connectButton().preferredWidth());
    EXPECT_EQ(bar->getTooltip(), bar->text());
}

}  // namespace
}  // namespace quillo
