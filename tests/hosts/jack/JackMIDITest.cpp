// SPDX-License-Identifier: GPL-3.0-or-later
// What goes through the program's ports, on a real server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "hosts/jack/JackProgramFixture.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;
using Messages = std::vector<ScriptMessage>;

class JackMIDI : public testing::Test, public JackProgramFixture {};

/// Of the scripts, those whose outputs depend on nothing but the messages that come in.
class JackMIDIScripts : public testing::TestWithParam<std::string>, public JackProgramFixture {};

INSTANTIATE_TEST_SUITE_P(All, JackMIDIScripts,
                         testing::Values("EveryChannelMessage", "EverySystemMessage", "EveryOutput", "Dense"),
                         [](const auto& name) { return name.param; });

TEST_P(JackMIDIScripts, WhatLeavesIsWhatTheUnitSendsInTheSameFramesWhateverTheLengthOfTheCycles) {
    const auto script = formatScript(GetParam());
    const auto expected = playedByTheUnit(script);
    for (const std::uint32_t bufferSize : {16U, 256U, 1024U}) {
        const JackServer server(JackServer::Settings{scriptSampleRate, bufferSize});
        const auto program = runWithDocument(server.name(), script.state);
        JackPlayer player(server.name());
        player.connectTo("midi-quillo");
        EXPECT_EQ(player.play(script.messages, script.end), expected) << bufferSize;
        EXPECT_EQ(end(*program), 0) << program->err().soFar();
    }
}

TEST_F(JackMIDI, LongSystemExclusiveInPiecesDisturbsNothingAround) {
    const JackServer server;
    const auto program = runOn(server.name(), {});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    Messages sent{{0, Bytes(256, 0x11)}, {1, {0xF8}}};
    sent.front().bytes.front() = 0xF0;
    for (SampleTime time = 2; time < 600; time += 2) {
        sent.push_back({time, Bytes(256, 0x22)});
        sent.push_back({time + 1, {0xFE}});
    }
    sent.push_back({600, {0x33, 0xF7}});
    sent.push_back({601, {0x90, 60, 1}});
    Messages expected;
    for (const auto& message : sent) {
        if (message.bytes.size() < 200 && message.bytes.back() != 0xF7) {
            expected.push_back(message);
        }
    }
    EXPECT_EQ(player.play(sent, 1024), expected);
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackMIDI, AFullPortIsToldWithTheNumberOfMessagesThatWereRefused) {
    const JackServer server;
    const auto program =
        runOn(server.name(),
              {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(systemExclusive(Bytes(1000, 1))))});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    Messages notes;
    for (SampleTime time = 0; time < 256; ++time) {
        notes.push_back({time, {0x90, 60, 1}});
    }
    const auto arrived = player.play(notes, 512);
    EXPECT_GT(arrived.size(), 20U);
    EXPECT_LT(arrived.size(), 256U);
    for (const auto& message : arrived) {
        EXPECT_EQ(message.bytes.size(), 1002U);
    }
    program->err().waitFor("the output port was full: ");
    program->err().waitFor("refused; what came after in these cycles was left out");
    const auto again = player.play({{0, {0x90, 60, 1}}}, 512);
    EXPECT_EQ(again.size(), 1U);
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackMIDI, AMessageThatIsTooLongForThePortIsReportedAndTakesNothingWithIt) {
    const JackServer server;
    const auto program = runOn(server.name(), {rule(onNoteOff(), send(systemExclusive(Bytes(100000, 1))))});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    const Messages notes{{0, {0x80, 60, 0}}, {9, {0x80, 61, 0}}};
    EXPECT_EQ(player.play(notes, 512), notes);
    program->err().waitFor("left out: longer than the output port takes");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackMIDI, NoNoteSoundsOnWhenTheProgramEnds) {
    const JackServer server;
    const auto program = runOn(server.name(), {});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    player.play({{0, {0x90, 60, 1}}, {1, {0x94, 61, 1}}, {2, {0x80, 60, 0}}, {3, {0xB4, 64, 127}}}, 512);
    player.forget();
    EXPECT_EQ(end(*program), 0);
    EXPECT_EQ(player.arrived(), (std::vector<Bytes>{{0x84, 61, 64}, {0xB4, 64, 0}}));
}

TEST_F(JackMIDI, ASignalAndAMessageArePanics) {
    const JackServer server;
    const auto program = runOn(server.name(), {}, {"--panic-message", "9f 24"});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    const Messages note{{0, {0x90, 60, 1}}};
    player.play(note, 512);
    program->signal(SIGUSR2);
    player.waitFor({0x80, 60, 64});
    player.play(note, 512);
    player.send({{0, {0x9F, 0x24, 99}}});
    player.waitFor({0x80, 60, 64});
    program->err().waitFor("Stopped 1 note\n");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackMIDI, TheLogPrintsWhatComesAndWhatGoes) {
    const JackServer server;
    const auto program = runOn(server.name(), controllerForNote(20), {"--log"});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    player.play({{0, {0x90, 60, 100}}}, 512);
    program->out().waitFor("90 3c 64");
    program->out().waitFor("note-on 60 (C3), velocity 100, channel 1\nout [");
    program->out().waitFor("b0 14 01");
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackMIDI, WhoReadsTheLogMayGoAndTheMIDIGoesOn) {
    const JackServer server;
    writePreset(PluginData{controllerForNote(20)}.write());
    const auto program = runAsItIs(
        {"/bin/sh", "-c", "\"$0\" --no-window --log --server \"$1\" --preset \"$2\" | head -n 1 >/dev/null",
         QUILLO_JACK_PROGRAM, server.name(), preset().string()});
    program->err().waitFor("on the JACK server");
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(player.play({{5, {0x90, 60, 1}}}, 1024).size(), 1U);
    }
    ::kill(-program->id(), SIGTERM);
    program->wait();
    // The shell ends before the program, which holds the stream until it has left the server.
    program->err().whole();
}

/// The memory that the process holds, in pages.
std::uint64_t residentPages(const ChildProcess& process) {
    std::ifstream file("/proc/" + std::to_string(process.id()) + "/statm");
    std::uint64_t size = 0;
    std::uint64_t resident = 0;
    file >> size >> resident;
    return resident;
}

TEST_F(JackMIDI, TenMinutesOfDenseTrafficLoseNothingAndTakeNoMemory) {
    constexpr SampleTime second = 48000;
    constexpr SampleTime spacing = 48;
    const JackServer server(JackServer::Settings{48000, 1024});
    const auto program = runOn(server.name(), {rule(onNoteOn(), send(controlChange(1, 7, 1), 700))});
    JackPlayer player(server.name());
    player.connectTo("midi-quillo");
    Messages minute;
    Messages expected;
    for (SampleTime time = 0; time < 60 * second; time += spacing) {
        const bool isNote = time % (10 * spacing) == 0;
        minute.push_back({time,
                          {static_cast<std::uint8_t>(isNote ? 0x90 : 0xB3), 60,
                           static_cast<std::uint8_t>(time % 127 + 1)}});
    }
    player.setFreewheel(true);
    player.letPass(2);
    const auto xrunsBefore = player.xruns();
    std::uint64_t pagesAfterFirst = 0;
    for (int count = 0; count < 10; ++count) {
        const auto arrived = player.playNow(minute, 61 * second);
        EXPECT_EQ(arrived.size(), minute.size() + minute.size() / 10);
        EXPECT_EQ(std::ranges::count(arrived, Bytes{0xB1, 7, 1}, &ScriptMessage::bytes),
                  static_cast<std::ptrdiff_t>(minute.size() / 10));
        pagesAfterFirst = count == 0 ? residentPages(*program) : pagesAfterFirst;
    }
    EXPECT_EQ(player.xruns(), xrunsBefore);
    player.setFreewheel(false);
    // Sanitizers take some pages themselves; a leak of two bytes a message would take more than these.
    constexpr std::uint64_t pagesOfAMegabyte = 256;
    EXPECT_LE(residentPages(*program), pagesAfterFirst + pagesOfAMegabyte);
    EXPECT_EQ(end(*program), 0);
    EXPECT_THAT(program->err().whole(), testing::Not(HasSubstr("full")));
}

}  // namespace
}  // namespace quillo
