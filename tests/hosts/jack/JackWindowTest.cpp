// SPDX-License-Identifier: GPL-3.0-or-later
// The program's window, on a display of its own.
#include "hosts/jack/JackWindow.hpp"

#include <gtest/gtest.h>

#include "hosts/cli/ExitStatus.hpp"
#include "hosts/jack/JackProgramFixture.hpp"

namespace quillo {
namespace {

using namespace test;

class JackWindowTest : public testing::Test, public JackProgramFixture {
protected:
    /// Waits until the display has a window of this title.
    static void waitForWindow(const std::string& title) {
        ChildProcess search({"xdotool", "search", "--sync", "--name", "^" + title + "$"});
        ASSERT_EQ(search.wait(), 0);
    }
};

TEST_F(JackWindowTest, WhatIsEditedInTheWindowReachesTheUnitAndTheHostHearsOfIt) {
    HostedUnit hosted;
    int edits = 0;
    hosted.setOnEdit([&] { ++edits; });
    JackWindow window(hosted, [] {});
    EXPECT_TRUE(window.isShowing());
    window.view().editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    EXPECT_EQ(edits, 1);
    EXPECT_EQ(hosted.unit().processor->rules().size(), 1U);
    window.view().editor().send(window.view().editor().rules()[0].id);
    EXPECT_EQ(hosted.unit().processor->pendingInstantMessages(), 1U);
}

TEST_F(JackWindowTest, TheUnitsRulesAreThereWhenTheWindowOpens) {
    HostedUnit hosted;
    hosted.unit().processor->setRules(controllerForNote(20));
    JackWindow window(hosted, [] {});
    EXPECT_EQ(window.view().editor().rules().size(), 1U);
}

TEST_F(JackWindowTest, ClosingIsTheHostsToDo) {
    HostedUnit hosted;
    int closed = 0;
    JackWindow window(hosted, [&] { ++closed; });
    window.userTriedToCloseWindow();
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(JackWindowTest, TheTitleSaysWhetherThereIsAServerAndASignalEndsTheProgram) {
    JackServer server;
    server.stop();
    const auto program =
        runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name(), "--name", "left"}, std::getenv("DISPLAY"));
    program->err().waitFor("MIDI Quillo waits");
    waitForWindow("MIDI Quillo \\(no JACK server\\)");
    server.start({});
    program->err().waitFor("as \"left\"");
    waitForWindow("MIDI Quillo \\(left\\)");
    server.kill();
    waitForWindow("MIDI Quillo \\(no JACK server\\)");
    EXPECT_EQ(end(*program), 0);
    EXPECT_FALSE(std::filesystem::exists(session("left").file(0)));
}

TEST_F(JackWindowTest, APresetThatCannotBeUsedOpensNoWindow) {
    const auto program =
        runAsItIs({QUILLO_JACK_PROGRAM, "--preset", (folder / "none.json").string()}, std::getenv("DISPLAY"));
    EXPECT_EQ(program->wait(), exitNoInput);
}

}  // namespace
}  // namespace quillo
