// SPDX-License-Identifier: GPL-3.0-or-later
// The program from its start to its end, with servers and ports that come and go.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <jack/metadata.h>
#include <jack/uuid.h>

#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/JackProgramFixture.hpp"
#include "platform/Descriptor.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::Not;
using Messages = std::vector<ScriptMessage>;

const Messages note{{7, {0x90, 60, 1}}};

class JackLife : public testing::Test, public JackProgramFixture {
protected:
    static constexpr int shortWhile = 100;  ///< in milliseconds

    static bool hasPort(const JackPlayer& player, const std::string& name) {
        return ::jack_port_by_name(player.client(), name.c_str()) != nullptr;
    }

    static std::string contentOf(const std::string& path) {
        std::ifstream file(path);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

TEST_F(JackLife, ASignalSavesTheRulesClosesThePortsAndEndsWell) {
    const JackServer server;
    JackPlayer player(server.name());
    for (const int signal : {SIGINT, SIGTERM}) {
        session().add(PluginData{controllerForNote(20)}.write());
        session().add(PluginData{controllerForNote(21)}.write());
        const auto program = run({"--server", server.name(), "--go-back", "1"});
        program->err().waitFor("on the JACK server");
        EXPECT_TRUE(hasPort(player, "midi-quillo:in") && hasPort(player, "midi-quillo:MIDIQuillo"));
        EXPECT_EQ(end(*program, signal), exitSuccess);
        EXPECT_FALSE(hasPort(player, "midi-quillo:in") || hasPort(player, "midi-quillo:MIDIQuillo"));
        EXPECT_EQ(readWholeFile(session().file(0)), PluginData{controllerForNote(20)}.write());
    }
}

TEST_F(JackLife, TheLastSessionsRulesComeBack) {
    session().add(PluginData{controllerForNote(33)}.write());
    const JackServer server;
    const auto program = run({"--server", server.name()});
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 33, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, ADamagedNewestVersionOfTheRulesGivesWayToTheOneBefore) {
    session().add(PluginData{controllerForNote(33)}.write());
    session().add(PluginData{controllerForNote(34)}.write());
    writeWholeFile(session().file(0), Data{'{', '"'}, Existing::replace);
    const JackServer server;
    const auto program = run({"--server", server.name()});
    program->err().waitFor(session().file(0).string() + " cannot be used");
    program->err().waitFor(session().file(1).string());
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 33, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, HangingUpReadsThePresetAgain) {
    const JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20));
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    writePreset(PluginData{controllerForNote(21)}.write());
    program->signal(SIGHUP);
    program->err().waitFor("read again");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 21, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, APresetThatIsDamagedOrGoneWhenItIsReadAgainLeavesTheRules) {
    const JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20));
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    writePreset(Data{'{'});
    program->signal(SIGHUP);
    program->err().waitFor(preset().string());
    program->err().waitFor("The rules stay as they are.");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    std::filesystem::remove(preset());
    program->signal(SIGHUP);
    program->err().waitFor("cannot be opened");
    program->err().waitFor("The rules stay as they are.");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, WithoutAPresetThereIsNothingToReadAgain) {
    const JackServer server;
    const auto program = run({"--server", server.name()});
    program->err().waitFor("on the JACK server");
    program->signal(SIGHUP);
    program->err().waitFor("there is no preset to read again");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, APresetThatCannotBeUsedEndsTheProgramBeforeItIsHeard) {
    writePreset(Data{'{'});
    const auto damaged = run({"--preset", preset().string()});
    EXPECT_EQ(damaged->wait(), exitBadData);
    EXPECT_THAT(damaged->err().whole(), HasSubstr(preset().string()));
    const auto missing = run({"--preset", (folder / "none.json").string()});
    EXPECT_EQ(missing->wait(), exitNoInput);
    EXPECT_THAT(missing->err().whole(), HasSubstr("none.json: cannot be opened"));
}

TEST_F(JackLife, WithoutAServerTheUserLearnsHowToGetOne) {
    const auto nobody = JackServer::takeName();
    const auto program = run({"--server", nobody});
    EXPECT_EQ(program->wait(), exitUnavailable);
    EXPECT_EQ(program->err().whole().find("midi-quillo-jack: There is no JACK server \"" + nobody +
                                          "\" to connect to.\nStart one, for instance"),
              0U);
    EXPECT_THAT(program->err().whole(), HasSubstr("midi-quillo-jack --start-server"));
    EXPECT_THAT(program->err().whole(), HasSubstr("pw-jack midi-quillo-jack"));
}

TEST_F(JackLife, AProgramThatIsToldToWaitGoesOnWhenTheServerComes) {
    JackServer server;
    server.stop();
    writePreset(PluginData{controllerForNote(20)}.write());
    const auto program = run({"--wait", "--server", server.name(), "--preset", preset().string()});
    program->err().waitFor("MIDI Quillo waits");
    server.start({});
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, AServerIsStartedOnDemandAndEndsWithItsLastClient) {
    const auto server = JackServer::takeName();
    std::ofstream(folder / ".jackdrc") << "/usr/bin/jackd -r -d dummy\n";
    const auto program = run({"--start-server", "--server", server});
    program->err().waitFor("on the JACK server \"" + server + "\"");
    EXPECT_EQ(end(*program), 0);
    // The server writes to the same stream as the program that has started it.
    program->err().whole();
    const auto socket = "/dev/shm/jack_" + server + "_" + std::to_string(::getuid()) + "_0";
    EXPECT_NE(::access(socket.c_str(), F_OK), 0);
}

TEST_F(JackLife, AServerThatCannotBeStartedIsToldInItsOwnWords) {
    const auto server = JackServer::takeName();
    std::ofstream(folder / ".jackdrc") << "/usr/bin/jackd -r -d nosuchdriver\n";
    const auto program = run({"--start-server", "--server", server});
    EXPECT_EQ(program->wait(), exitUnavailable);
    EXPECT_THAT(program->err().whole(), HasSubstr("cannot be started. JACK says:\n    "));
    EXPECT_THAT(program->err().whole(), Not(HasSubstr("--start-server")));
}

/// The parameter is how the server ends.
class JackServerReturns : public testing::TestWithParam<std::string>, public JackProgramFixture {};
INSTANTIATE_TEST_SUITE_P(AfterA, JackServerReturns, testing::Values("Stop", "Crash"),
                         [](const auto& end) { return end.param; });

TEST_P(JackServerReturns, RulesAndConnectionsAreThereAgainAndDelaysFollowTheNewSampleRate) {
    JackServer server(JackServer::Settings{48000, 256});
    const auto program = runOn(server.name(), controllerForNote(20, 100),
                               {"--connect-in", "^test-", "--connect-out", "^test-"});
    {
        JackPlayer player(server.name());
        player.waitForConnection();
        EXPECT_EQ(player.play(note, 9600), (Messages{{7 + 4800, {0xB0, 20, 1}}}));
        GetParam() == "Stop" ? server.stop() : server.kill();
        program->err().waitFor("The JACK server has ended");
    }
    server.start({44100, 1024});
    program->err().waitFor("back on the JACK server \"" + server.name() +
                           "\" as \"midi-quillo\", 44100 Hz, 1024 frames a cycle");
    JackPlayer player(server.name());
    player.waitForConnection();
    EXPECT_EQ(player.play(note, 9600), (Messages{{7 + 4410, {0xB0, 20, 1}}}));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, ASignalEndsTheProgramWellWhileTheServerIsGone) {
    JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20));
    server.stop();
    program->err().waitFor("The JACK server has ended");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, AServerThatHangsIsToldAndSignalsEndTheProgramAllTheSame) {
    JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20));
    JackPlayer(server.name()).connectTo("midi-quillo");
    server.hang();
    program->err().waitFor("The JACK server has ended");
    do {
        program->signal(SIGTERM);
    } while (!program->endsWithin(shortWhile));
    EXPECT_THAT(program->wait(), testing::AnyOf(exitSuccess, 128 + SIGTERM)) << "One may meet it at its end.";
}

TEST_F(JackLife, ASignalEndsTheProgramWellWhileAServerThatHangsKeepsItFromTheBeginning) {
    session().add(Data{'{'});
    JackServer server;
    server.hang();
    const auto program = run({"--server", server.name()});
    program->err().waitFor("No version of the last session's rules can be used");
    EXPECT_EQ(end(*program), exitSuccess);
}

TEST_F(JackLife, ASignalEndsTheProgramWellWhileNobodyReadsItsLog) {
    const auto log = (folder / "log").string();
    ASSERT_EQ(::mkfifo(log.c_str(), 0600), 0);
    const Descriptor reader(::open(log.c_str(), O_RDWR | O_CLOEXEC));
    const JackServer server;
    const auto program = runAsItIs({"sh", "-c", "exec \"$@\" >\"$0\"", log, QUILLO_JACK_PROGRAM,
                                    "--no-window", "--log", "--server", server.name()});
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    Messages much;
    for (SampleTime time = 0; time < 3000; ++time) {
        much.push_back({8 * time, {0x90, 60, 1}});
    }
    EXPECT_EQ(player.play(much, 24000), much);
    EXPECT_EQ(end(*program), exitSuccess);
}

TEST_F(JackLife, ThePortsAreConnectedAsOftenAsTheirPatternsAppear) {
    const JackServer server;
    const auto program =
        runOn(server.name(), controllerForNote(20),
              {"--connect-in", "^nobody", "--connect-in", "sender:o", "--connect-out", "-listener:"});
    for (int round = 0; round < 3; ++round) {
        JackPlayer player(server.name());
        program->err().waitFor("hears test-sender:out");
        player.waitForConnection();
        EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    }
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, APortIsKnownByItsAliasToo) {
    const JackServer server;
    JackPlayer player(server.name());
    ::jack_port_set_alias(::jack_port_by_name(player.client(), player.inputName().c_str()),
                          "studio:Grand Piano");
    const auto program = runOn(server.name(), {}, {"--connect-out", "Grand P"});
    program->err().waitFor("sends to test-listener:in");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, WhatTheUserDisconnectsStaysSo) {
    const JackServer server;
    const auto program =
        runOn(server.name(), {}, {"--connect-in", "^test-", "--connect-out", "^(test-|other)"});
    JackPlayer player(server.name());
    player.waitForConnection();
    ASSERT_EQ(::jack_disconnect(player.client(), player.outputName().c_str(), "midi-quillo:in"), 0);
    ::jack_port_register(player.client(), "other", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    program->err().waitFor("sends to test-sender:other");
    EXPECT_EQ(player.play({{0, {0xC0, 1}}}, 512), Messages{});
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, RulesThatWaitForBeingLoadedAreHeardByPortsThatMatch) {
    const JackServer server;
    JackPlayer player(server.name());
    const auto program = runOn(server.name(), {rule(onLoad(), send(systemExclusive({0x7E, 0x7F, 9, 1})))},
                               {"--connect-out", "^test-"});
    player.waitFor({0xF0, 0x7E, 0x7F, 9, 1, 0xF7});
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, TheLengthOfTheCyclesMayChangeWhileMessagesAreOnTheirWay) {
    const JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20, 50));
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    for (const jack_nframes_t length : {512U, 64U, 1024U, 16U, 4096U, 256U}) {
        player.forget();
        player.send(note);
        ASSERT_EQ(::jack_set_buffer_size(player.client(), length), 0);
        player.waitFor({0xB0, 20, 1});
        player.waitForConnection();
        EXPECT_EQ(player.play(note, 9600), (Messages{{7 + 2400, {0xB0, 20, 1}}})) << length;
    }
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackLife, ASecondProgramHasANameAndASessionOfItsOwn) {
    const JackServer server;
    const auto first = runOn(server.name(), controllerForNote(20));
    const auto second = run({"--server", server.name()});
    second->err().waitFor(
        "another \"midi-quillo\" is running; this one keeps its rules as \"midi-quillo-2\"");
    second->err().waitFor("as \"midi-quillo-01\" (\"midi-quillo\" is taken)");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    EXPECT_TRUE(hasPort(player, "midi-quillo-01:in") && hasPort(player, "midi-quillo-01:MIDIQuillo"));
    EXPECT_EQ(end(*second), 0);
    EXPECT_EQ(player.play(note, 256), (Messages{{7, {0xB0, 20, 1}}}));
    EXPECT_EQ(end(*first), 0);
}

TEST_F(JackLife, TheNameIsTheUsersToChoose) {
    const JackServer server;
    JackPlayer player(server.name());
    const auto program = run({"--server", server.name(), "--name", std::string(60, 'n')});
    program->err().waitFor("as \"" + std::string(60, 'n') + "\"");
    EXPECT_TRUE(hasPort(player, std::string(60, 'n') + ":MIDIQuillo"));
    const auto second = run({"--server", server.name(), "--name", std::string(60, 'n')});
    second->err().waitFor("as \"" + std::string(60, 'n') + "-01\"");
    EXPECT_EQ(end(*program), 0);
    EXPECT_EQ(end(*second), 0);
}

std::string propertyOf(jack_uuid_t subject, const char* key) {
    char* value = nullptr;
    char* type = nullptr;
    std::string text;
    if (::jack_get_property(subject, key, &value, &type) == 0) {
        text = std::string(type) + ": " + value;
        ::jack_free(value);
        ::jack_free(type);
    }
    return text;
}

TEST_F(JackLife, TheClientAndItsPortsHaveNamesAndIconsForPeople) {
    const JackServer server;
    JackPlayer player(server.name());
    const auto program = runOn(server.name(), {});
    jack_uuid_t client = JACK_UUID_EMPTY_INITIALIZER;
    auto* text = ::jack_get_uuid_for_client_name(player.client(), "midi-quillo");
    ASSERT_NE(text, nullptr);
    ::jack_uuid_parse(text, &client);
    ::jack_free(text);
    EXPECT_EQ(propertyOf(client, JACK_METADATA_PRETTY_NAME), "text/plain: MIDI Quillo");
    EXPECT_EQ(propertyOf(client, JACK_METADATA_ICON_NAME), "text/plain: midi-quillo-jack");
    EXPECT_EQ(propertyOf(client, JACK_METADATA_ICON_SMALL).find("image/png;base64: iVBORw0KGgo"), 0U);
    EXPECT_EQ(propertyOf(client, JACK_METADATA_ICON_LARGE).find("image/png;base64: iVBORw0KGgo"), 0U);
    const auto portNamed = [&](const char* name) {
        return ::jack_port_uuid(::jack_port_by_name(player.client(), name));
    };
    EXPECT_EQ(propertyOf(portNamed("midi-quillo:in"), JACK_METADATA_PRETTY_NAME), "text/plain: MIDI In");
    EXPECT_EQ(propertyOf(portNamed("midi-quillo:MIDIQuillo"), JACK_METADATA_PRETTY_NAME),
              "text/plain: MIDI Out");
    EXPECT_EQ(end(*program), 0);
    EXPECT_EQ(propertyOf(client, JACK_METADATA_PRETTY_NAME), "");
}

TEST_F(JackLife, WithoutAWindowNoDisplayIsTouched) {
    const JackServer server;
    const auto program = run({"--server", server.name()});
    program->err().waitFor("on the JACK server");
    EXPECT_THAT(contentOf("/proc/" + std::to_string(program->id()) + "/maps"), Not(HasSubstr("libX11")));
    EXPECT_EQ(end(*program), 0);
}

#ifdef QUILLO_WITH_WINDOW
TEST_F(JackLife, WithADisplayThatDoesNotAnswerTheUserLearnsOfTheOption) {
    const JackServer server;
    const auto program = runAsItIs({QUILLO_JACK_PROGRAM, "--server", server.name()}, ":9999");
    EXPECT_EQ(program->wait(), exitUnavailable);
    EXPECT_THAT(program->err().whole(), HasSubstr("--no-window"));
}
#endif

TEST_F(JackLife, WhatNeedsNoServerNeedsNone) {
    session().add(PluginData{controllerForNote(20)}.write());
    const auto history = run({"--history"});
    EXPECT_EQ(history->wait(), 0);
    EXPECT_THAT(history->out().whole(), HasSubstr("1 rule   " + session().file(0).string()));
    const auto help = run({"--help"});
    EXPECT_EQ(help->wait(), 0);
    EXPECT_EQ(help->out().whole().find("Usage: midi-quillo-jack [OPTIONS]\n"), 0U);
    const auto version = run({"--version"});
    EXPECT_EQ(version->wait(), 0);
    EXPECT_EQ(version->out().whole().find("midi-quillo-jack 1."), 0U);
    const auto wrong = run({"--presets"});
    EXPECT_EQ(wrong->wait(), exitUsage);
    EXPECT_THAT(wrong->err().whole(), HasSubstr("unknown option --presets\nUsage: "));
}

}  // namespace
}  // namespace quillo
