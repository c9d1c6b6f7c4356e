// SPDX-License-Identifier: GPL-3.0-or-later
// The program's window, on a display of its own.
#include <gtest/gtest.h>

#include "commandline/CommandFailure.hpp"
#include "editor/EditorShell.hpp"
#include "editor/EditorWindow.hpp"
#include "editor/MyTextInputImpl.hpp"
#include "hosts/jack/JackProgramFixture.hpp"
#include "hosts/jack/NSMServer.hpp"
#include "hosts/jack/ServerBar.hpp"
#include "hosts/jack/SessionSettings.hpp"
#include "session/Session.hpp"
#include "support/FindBelow.hpp"

namespace quillo {
namespace {

using namespace test;

class JackWindowTest : public testing::Test, public JackProgramFixture {
protected:
    /// Waits until the display has a window of this title.
    static void waitForWindow(const std::string& title) {
        onTheDisplay({"search", "--sync", "--name", "^" + title + "$"});
    }

    /// Whether the display shows one.
    static bool hasWindow() {
        return ChildProcess({"xdotool", "search", "--onlyvisible", "--name", "^MIDI Quillo"}).wait() == 0;
    }

    static void onTheDisplay(Words words) {
        words.insert(words.begin(), "xdotool");
        ASSERT_EQ(ChildProcess(words).wait(), 0);
    }

    /// Where it is in a window with these rules.
    static juce::Point<int> textOfTheFirstTextField(const std::vector<Rule>& rules) {
        Session edited;
        edited.onRulesChanged(rules);
        EditorShell shell(edited);
        auto& view = shell.view();
        const auto noServer = [] { return std::optional<ServerStatus>(); };
        view.setStatusBar(std::make_unique<ServerBar>(ServerBar::Actions{noServer, {}}));
        const EditorWindow window(view, [] {});
        const auto* field = findBelow<MyTextInputImpl>(view);
        return view.getLocalPoint(field, juce::Point(field->getHeight() / 2, field->getHeight() / 2));
    }
};

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

TEST_F(JackWindowTest, TheWindowSystemHasTheIcon) {
    JackServer server;
    server.stop();
    const auto program = runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name()}, std::getenv("DISPLAY"));
    program->err().waitFor("MIDI Quillo waits");
    waitForWindow("MIDI Quillo \\(no JACK server\\)");
    ChildProcess find({"xdotool", "search", "--name", "^MIDI Quillo"});
    ChildProcess look({"xprop", "-id", std::to_string(std::stoul(find.out().whole())), "_NET_WM_ICON"});
    EXPECT_THAT(look.out().whole(), testing::HasSubstr("Icon (128 x 128)"));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackWindowTest, TheWindowIsDrawnAtTheScaleThatIsAsked) {
    JackServer server;
    server.stop();
    const auto program =
        runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name(), "--scale", "1.5"}, std::getenv("DISPLAY"));
    program->err().waitFor("MIDI Quillo waits");
    waitForWindow("MIDI Quillo \\(no JACK server\\)");
    ChildProcess look({"xdotool", "search", "--name", "^MIDI Quillo", "getwindowgeometry", "--shell"});
    EXPECT_THAT(look.out().whole(), testing::HasSubstr("WIDTH=1230\nHEIGHT=960\n"));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackWindowTest, WhatIsTypedAndNotConfirmedIsKeptWhenTheProgramEnds) {
    const auto rules = controllerForNote(20);
    session().add(PluginData{rules}.write());
    const auto field = textOfTheFirstTextField(rules);
    JackServer server;
    const auto program = runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name()}, std::getenv("DISPLAY"));
    program->err().waitFor("as \"midi-quillo\"");
    juce::SystemClipboard::copyTextToClipboard("");
    // Two clicks that a slow display takes for single ones open no field.
    for (int look = 0; juce::SystemClipboard::getTextFromClipboard() != "typed"; ++look) {
        if (look % 100 == 0) {
            onTheDisplay({"search", "--sync", "--name", "^MIDI Quillo$", "windowfocus", "--sync", "mousemove",
                          "--sync", "--window", "%1", std::to_string(field.x), std::to_string(field.y),
                          "click", "--repeat", "2", "1", "type", "typed"});
        }
        onTheDisplay({"key", "ctrl+a", "ctrl+c"});
    }
    EXPECT_EQ(end(*program), 0);
    EXPECT_EQ(PluginData::read(readWholeFile(session().file(0))).rules.front().name, "typed");
}

TEST_F(JackWindowTest, ASessionManagerShowsAndHidesTheWindowWhichComesBackAsLargeAsItWas) {
    const JackServer server;
    NSMServer manager;
    const auto project = (folder / "midi-quillo.nA").string();
    auto environment = environmentOf(std::getenv("DISPLAY"));
    environment["NSM_URL"] = manager.url();
    const auto open = [&](ChildProcess& program) {
        const auto client = manager.takeClient();
        EXPECT_EQ(manager.open(client, project, "midi-quillo.nA"), "OK");
        program.err().waitFor(" a cycle\n");
        EXPECT_TRUE(program.err().soFar().ends_with(" a cycle\n")) << program.err().soFar();
        return client;
    };
    {
        ChildProcess program({QUILLO_JACK_PROGRAM, "--server", server.name()}, environment);
        const auto client = open(program);
        manager.waitFor("/nsm/client/gui_is_hidden", client);
        EXPECT_FALSE(hasWindow());
        manager.send(client, "/nsm/client/show_optional_gui");
        manager.waitFor("/nsm/client/gui_is_shown", client);
        waitForWindow("MIDI Quillo \\(midi-quillo.nA\\)");
        onTheDisplay({"search", "--name", "^MIDI Quillo", "windowsize", "--sync", "620", "430"});
        EXPECT_EQ(manager.ask(client, "/nsm/client/save"), "OK");
        EXPECT_EQ(end(program), 0);
    }
    ChildProcess program({QUILLO_JACK_PROGRAM, "--server", server.name()}, environment);
    const auto client = open(program);
    manager.waitFor("/nsm/client/gui_is_shown", client);
    waitForWindow("MIDI Quillo \\(midi-quillo.nA\\)");
    ChildProcess look({"xdotool", "search", "--name", "^MIDI Quillo", "getwindowgeometry", "--shell"});
    EXPECT_THAT(look.out().whole(), testing::HasSubstr("WIDTH=620\nHEIGHT=430\n"));
    EXPECT_TRUE(hasWindow());
    manager.send(client, "/nsm/client/hide_optional_gui");
    manager.waitFor("/nsm/client/gui_is_hidden", client);
    while (hasWindow()) {
    }
    EXPECT_EQ(end(program), 0);
}

TEST_F(JackWindowTest, APortIsConnectedByKeysInAWindowThatWasJustOpened) {
    const JackServer server;
    JackPlayer player(server.name());
    const auto program = runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name()}, std::getenv("DISPLAY"));
    program->err().waitFor("as \"midi-quillo\"");
    onTheDisplay({"search", "--sync", "--name", "^MIDI Quillo$", "windowfocus", "--sync"});
    const Words throughTheHeader(9, "Tab");
    Words keys{"key", "--delay", "50"};
    keys.insert(keys.end(), throughTheHeader.begin(), throughTheHeader.end());
    keys.insert(keys.end(), {"Return", "Return"});
    onTheDisplay(keys);
    program->err().waitFor("hears test-sender:out");
    // The window shows a connection when it is in force; a key before that asks for it once more.
    const auto* port = ::jack_port_by_name(player.client(), player.outputName().c_str());
    do {
        onTheDisplay({"key", "Return"});
        player.letPass(20);
    } while (::jack_port_connected(port) != 0);
    program->err().waitFor("no longer hears test-sender:out");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackWindowTest, AnImportIntoAnEmptyListEndsTheNotesThatSound) {
    writeWholeFile(folder / "imported.json", PluginData{controllerForNote(20)}.write(), Existing::keep);
    session().makeFolder();
    writeSettings(session().settingsFile(), {{}, {}, {true, "", folder.path().string()}});
    const JackServer server;
    JackPlayer player(server.name());
    const auto program = runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name()}, std::getenv("DISPLAY"));
    program->err().waitFor("as \"midi-quillo\"");
    player.connectTo("midi-quillo");
    player.send({{7, {0x90, 60, 1}}});
    player.waitFor({0x90, 60, 1});
    onTheDisplay({"search", "--sync", "--name", "^MIDI Quillo$", "windowfocus", "--sync"});
    onTheDisplay({"key", "--delay", "50", "Tab", "Return"});
    onTheDisplay({"type", "--delay", "50", "imported"});
    onTheDisplay({"key", "Return"});
    player.waitFor({0x80, 60, 64});
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackWindowTest, APresetThatCannotBeUsedOpensNoWindow) {
    const auto program =
        runAsItIs({QUILLO_JACK_PROGRAM, "--preset", (folder / "none.json").string()}, std::getenv("DISPLAY"));
    EXPECT_EQ(program->wait(), exitNoInput);
}

}  // namespace
}  // namespace quillo
