// SPDX-License-Identifier: GPL-3.0-or-later
// Programs in a session, with a session manager and a server of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/JackProgramFixture.hpp"
#include "hosts/jack/NSMServer.hpp"
#include "hosts/jack/SessionSettings.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

const Messages playedNote{{7, {0x90, 60, 1}}};

class JackSession : public testing::Test, public JackProgramFixture {
protected:
    /// A program of the session, as the manager starts one.
    struct Client {
        std::unique_ptr<ChildProcess> process;
        std::string address;
    };

    Client startClient(Words words = {"--no-window"}) {
        words.insert(words.begin(), QUILLO_JACK_PROGRAM);
        auto environment = environmentOf("");
        environment["NSM_URL"] = manager.url();
        environment["JACK_DEFAULT_SERVER"] = server.name();
        auto process = std::make_unique<ChildProcess>(words, environment);
        auto address = manager.takeClient();
        return {std::move(process), std::move(address)};
    }

    void open(const Client& client, const std::string& id) {
        ASSERT_EQ(manager.open(client.address, project(id), "midi-quillo." + id), "OK");
    }

    std::string project(const std::string& id) { return (folder / "songs" / ("midi-quillo." + id)).string(); }

    /// What a session was saved with: controller for note 60, and all else passes.
    void writeProject(const std::string& id, std::uint8_t controller) {
        std::filesystem::create_directories(project(id));
        writeWholeFile(project(id) + "/rules.json", PluginData{controllerForNote(controller)}.write(),
                       Existing::replace);
    }

    void connect(JackPlayer& player, const std::string& source, const std::string& target) {
        ASSERT_EQ(::jack_connect(player.client(), source.c_str(), target.c_str()), 0);
        waitForConnection(player, source, target);
    }

    void waitForConnection(JackPlayer& player, const std::string& source, const std::string& target) {
        while (!connectionsOf(player, source).contains(target)) {
            player.letPass(1);
        }
    }

    static std::set<std::string> connectionsOf(const JackPlayer& player, const std::string& port) {
        std::set<std::string> names;
        auto* found = ::jack_port_by_name(player.client(), port.c_str());
        const char** all =
            found == nullptr ? nullptr : ::jack_port_get_all_connections(player.client(), found);
        for (const char** name = all; name != nullptr && *name != nullptr; ++name) {
            names.emplace(*name);
        }
        ::jack_free(static_cast<void*>(all));
        return names;
    }

    JackServer server;
    NSMServer manager;
};

TEST_F(JackSession, TwoProgramsSavedAndClosedComeBackInAnotherOrderWithRulesNamesAndConnections) {
    JackPlayer player(server.name());
    writeProject("nA", 20);
    writeProject("nB", 21);
    const std::vector<std::pair<std::string, std::string>> cables{
        {player.outputName(), "midi-quillo.nB:in"},
        {"midi-quillo.nB:MIDIQuillo", "midi-quillo.nA:in"},
        {"midi-quillo.nA:MIDIQuillo", player.inputName()},
        {player.outputName(), "midi-quillo.nA:in"}};
    {
        const auto first = startClient();
        open(first, "nA");
        const auto second = startClient();
        open(second, "nB");
        for (const auto& [source, target] : cables) {
            connect(player, source, target);
        }
        for (const auto& client : {&first, &second}) {
            EXPECT_EQ(manager.ask(client->address, "/nsm/client/save"), "OK");
        }
        EXPECT_EQ(end(*first.process), exitSuccess);
        EXPECT_EQ(end(*second.process), exitSuccess);
    }
    const auto second = startClient();
    const auto first = startClient();
    open(second, "nB");
    open(first, "nA");
    for (const auto& [source, target] : cables) {
        waitForConnection(player, source, target);
    }
    player.waitForConnection();
    const auto played = player.play(playedNote, 2048);
    EXPECT_THAT(played, testing::UnorderedElementsAre(ScriptMessage{7, {0xB0, 20, 1}},
                                                      ScriptMessage{7, {0xB0, 21, 1}}));
    EXPECT_EQ(connectionsOf(player, "midi-quillo.nA:MIDIQuillo"), std::set{player.inputName()});
    EXPECT_EQ(connectionsOf(player, "midi-quillo.nB:in"), std::set{player.outputName()});
    EXPECT_EQ(end(*first.process), exitSuccess);
    EXPECT_EQ(end(*second.process), exitSuccess);
}

TEST_F(JackSession, NoClientOfTheServerIsThereBeforeAProjectIsOpened) {
    JackPlayer player(server.name());
    const auto client = startClient();
    EXPECT_EQ(::jack_port_by_name(player.client(), "midi-quillo:in"), nullptr);
    open(client, "nA");
    EXPECT_NE(::jack_port_by_name(player.client(), "midi-quillo.nA:in"), nullptr);
    EXPECT_EQ(end(*client.process), exitSuccess);
}

TEST_F(JackSession, AnotherProjectRenamesTheClientAndEndsTheNotesOfTheFirst) {
    JackPlayer player(server.name());
    writeProject("nB", 21);
    const auto client = startClient();
    open(client, "nA");
    player.connectTo("midi-quillo.nA");
    player.send(playedNote);
    player.waitFor({0x90, 60, 1});
    open(client, "nB");
    player.waitFor({0x80, 60, 64});
    EXPECT_EQ(::jack_port_by_name(player.client(), "midi-quillo.nA:in"), nullptr);
    player.connectTo("midi-quillo.nB");
    EXPECT_EQ(player.play(playedNote, 256), (Messages{{7, {0xB0, 21, 1}}}));
    EXPECT_EQ(end(*client.process), exitSuccess);
}

TEST_F(JackSession, TheEndOfAProgramEndsItsNotesAndSavesNothing) {
    JackPlayer player(server.name());
    const auto client = startClient();
    open(client, "nA");
    player.connectTo("midi-quillo.nA");
    player.send(playedNote);
    player.waitFor({0x90, 60, 1});
    EXPECT_EQ(end(*client.process), exitSuccess);
    player.waitFor({0x80, 60, 64});
    EXPECT_FALSE(std::filesystem::exists(project("nA")));
}

TEST_F(JackSession, ConnectionsMadeByHandComeBackAtTheNextStartWithoutAManagerToo) {
    {
        const auto program = run({"--server", server.name()});
        program->err().waitFor("on the JACK server");
        JackPlayer player(server.name());
        player.connectTo("midi-quillo");
        EXPECT_EQ(end(*program), exitSuccess);
    }
    EXPECT_EQ(readSettings(session().settingsFile()),
              (SessionSettings{{"test-sender:out"}, {"test-listener:in"}, {}}));
    const auto program = run({"--server", server.name()});
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    program->err().waitFor("hears test-sender:out");
    player.waitForConnection();
    EXPECT_EQ(end(*program), exitSuccess);
}

}  // namespace
}  // namespace quillo
