// SPDX-License-Identifier: GPL-3.0-or-later
// The program's inside without a server and without a window.
#include "hosts/jack/JackHost.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <sstream>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/FakeWindow.hpp"
#include "hosts/jack/HandTurnedLoop.hpp"
#include "hosts/jack/JackServer.hpp"
#include "hosts/jack/SessionFiles.hpp"
#include "hosts/jack/SessionSettings.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;

class JackHostTest : public testing::Test {
protected:
    JackHostTest() {
        ::setenv("XDG_STATE_HOME", folder.path().c_str(), 1);
        ::unsetenv("NSM_URL");
        options.server = JackServer::takeName();
        options.window = false;
        options.wait = true;
    }

    /// A program that waits for its server.
    JackHost& start() {
        host.emplace(options, Console{in, out, err}, loop, signals);
        host->loadRules();
        host->start();
        return *host;
    }

    std::string ruleName() {
        const auto rules = host->session().processor().rules();
        return rules.empty() ? "" : rules.front().name;
    }

    void writePreset(const std::string& name) {
        writeWholeFile(preset, PluginData{rulesCalled(name)}.write(), Existing::replace);
    }

    /// What leaves in a block with this message, or without one.
    Timed block(const Bytes& message = {}) {
        TestOutput output;
        auto& renderer = host->session().renderer();
        renderer.begin(64, output);
        renderer.receive(0, message);
        EXPECT_EQ(renderer.end(), noErr);
        return output.take();
    }

    void letPass(int seconds) {
        for (int count = 0; count < seconds * EventLoop::ticksPerSecond; ++count) {
            loop.tick();
        }
    }

    void takeSignal(int signal) {
        ::kill(::getpid(), signal);
        loop.callbacks.at(signals.number())();
    }

    TemporaryFolder folder;
    const std::filesystem::path preset = folder / "preset.json";
    SessionFiles files{folder.path() / "midi-quillo", "midi-quillo"};
    JackOptions options;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    HandTurnedLoop loop;
    SignalDescriptor signals{JackHost::ownSignals};
    std::optional<JackHost> host;
};

TEST_F(JackHostTest, APresetBringsWhatIsSwitchedOff) {
    const PluginData data{rulesCalled("on"), {{0, rulesCalled("off").front()}}};
    writeWholeFile(preset, data.write(), Existing::replace);
    options.preset = preset;
    EXPECT_EQ(start().session().save(), data.write());
}

TEST_F(JackHostTest, AnEditIsKeptInTheSessionWhenTheProgramEnds) {
    start().session().onRulesChanged(rulesCalled("edited"));
    host->finish();
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("edited")}.write());
}

TEST_F(JackHostTest, AnEditIsKeptBeforeTheServerIsLookedForWhichMayHang) {
    start().session().onRulesChanged(rulesCalled("edited"));
    // The call throws, so only what is kept before it can be in the file.
    EXPECT_THROW(host->link().connect(), ServerFailure);
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("edited")}.write());
}

TEST_F(JackHostTest, AnEditOfAPresetIsKeptInTheSessionAndTheUserIsToldOnceThatThePresetStays) {
    writePreset("preset");
    options.preset = preset.string();
    start();
    EXPECT_EQ(ruleName(), "preset");
    host->session().onRulesChanged(rulesCalled("edited"));
    host->session().onRulesChanged(rulesCalled("edited again"));
    host->finish();
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("edited again")}.write());
    EXPECT_EQ(readWholeFile(preset), PluginData{rulesCalled("preset")}.write());
    const auto told =
        "the edited rules are kept in " + files.file(0).string() + "; " + preset.string() + " stays as it is";
    EXPECT_NE(err.str().find(told), std::string::npos) << err.str();
    EXPECT_EQ(err.str().find(told), err.str().rfind(told));
}

TEST_F(JackHostTest, APresetThatIsReadAgainDoesNotFireItsOnLoadRulesAgain) {
    writeWholeFile(preset, PluginData{{rule(onLoad(), send(controlChange(0, 7, 5)))}}.write(),
                   Existing::keep);
    options.preset = preset.string();
    start();
    EXPECT_EQ(block(), (Timed{{0, {0xB0, 7, 5}}}));
    takeSignal(SIGHUP);
    EXPECT_EQ(block(), Timed());
}

TEST_F(JackHostTest, RulesThatCannotBeSavedAtTheEndAreInTheExitStatus) {
    start().session().onRulesChanged(rulesCalled("edited"));
    std::filesystem::remove_all(folder / "midi-quillo");
    writeWholeFile(folder / "midi-quillo", Data{1}, Existing::keep);
    EXPECT_EQ(host->finish(exitFatal), exitFatal);
    EXPECT_EQ(host->finish(), exitCannotCreate);
    std::filesystem::remove(folder / "midi-quillo");
    EXPECT_EQ(host->finish(), exitSuccess);
}

TEST_F(JackHostTest, ASignalSavesAtOnceAlsoWhatHasNotChanged) {
    writePreset("preset");
    options.preset = preset.string();
    start();
    takeSignal(SIGUSR1);
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("preset")}.write());
    EXPECT_THAT(err.str(), HasSubstr("the rules are saved in " + files.file(0).string() + "\n"));
}

TEST_F(JackHostTest, ASignalThatCannotSaveSaysWhyAndNothingElse) {
    start();
    std::filesystem::remove_all(folder / "midi-quillo");
    writeWholeFile(folder / "midi-quillo", Data{1}, Existing::keep);
    takeSignal(SIGUSR1);
    EXPECT_THAT(err.str(), HasSubstr("The rules cannot be saved: " + (folder / "midi-quillo").string()));
    EXPECT_THAT(err.str(), testing::Not(HasSubstr("are saved in")));
}

TEST_F(JackHostTest, ConnectionsWhosePortsAreMissingAreKeptFromProgramToProgram) {
    files.makeFolder();
    const SessionSettings settings{{"keys:out"}, {"synth:in"}, {}};
    writeSettings(files.settingsFile(), settings);
    start();
    host->finish();
    EXPECT_EQ(readSettings(files.settingsFile()), settings);
}

TEST_F(JackHostTest, TheWindowIsShownWhereItWasAndKnowsTheFolderOfTheLastImport) {
    const auto run = [&](FakeWindow& window) {
        host.emplace(options, Console{in, out, err}, loop, signals);
        host->loadRules();
        host->setWindow(window);
        host->start();
        EXPECT_TRUE(window.memory.isShown);
    };
    FakeWindow first;
    run(first);
    first.memory.place = "10 20 300 400";
    first.memory.presetFolder = "/home/me/my presets";
    host->finish();
    FakeWindow second;
    run(second);
    EXPECT_EQ(second.memory.place, "10 20 300 400");
    EXPECT_EQ(second.memory.presetFolder, "/home/me/my presets");
}

TEST_F(JackHostTest, SettingsThatCannotBeKeptAreToldOnceAndKeptAsSoonAsTheyCanBe) {
    const auto letPass = [&](int seconds) {
        for (int count = 0; count < seconds * EventLoop::ticksPerSecond; ++count) {
            loop.tick();
        }
    };
    const auto timesTold = [&] {
        const auto text = err.str();
        std::size_t count = 0;
        for (auto at = text.find("cannot be kept: "); at != std::string::npos;
             at = text.find("cannot be kept: ", at + 1)) {
            ++count;
        }
        return count;
    };
    FakeWindow window;
    std::filesystem::create_directories(files.settingsFile());
    start().setWindow(window);
    window.memory.place = "10 20 300 400";
    letPass(3);
    EXPECT_EQ(timesTold(), 1U);
    takeSignal(SIGUSR1);
    letPass(3);
    EXPECT_EQ(timesTold(), 2U) << "The user has asked again.";
    std::filesystem::remove(files.settingsFile());
    letPass(1);
    EXPECT_EQ(readSettings(files.settingsFile()).window.place, "10 20 300 400");
    host.reset();
}

TEST_F(JackHostTest, APresetThatHasBecomeAPipeIsNotWaitedFor) {
    writePreset("preset");
    options.preset = preset.string();
    start();
    std::filesystem::remove(preset);
    ASSERT_EQ(::mkfifo(preset.c_str(), 0600), 0);
    takeSignal(SIGHUP);
    EXPECT_EQ(ruleName(), "preset");
    EXPECT_NE(err.str().find(preset.string() + ": cannot be read: it is not a regular file"),
              std::string::npos);
}

TEST_F(JackHostTest, APresetThatNobodyEditsLeavesTheSessionAlone) {
    files.add(PluginData{rulesCalled("last session")}.write());
    writePreset("preset");
    options.preset = preset.string();
    start();
    loop.tick();
    host->finish();
    EXPECT_EQ(files.versions().size(), 1U);
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("last session")}.write());
}

TEST_F(JackHostTest, HangingUpReadsThePresetAndOtherSignalsQuit) {
    writePreset("first");
    options.preset = preset.string();
    start();
    writePreset("second");
    takeSignal(SIGHUP);
    EXPECT_EQ(ruleName(), "second");
    EXPECT_EQ(loop.status, std::nullopt);
    writeWholeFile(preset, Data{'{'}, Existing::replace);
    takeSignal(SIGHUP);
    EXPECT_EQ(ruleName(), "second");
    EXPECT_THAT(err.str(), HasSubstr("The rules stay as they are."));
    takeSignal(SIGTERM);
    EXPECT_EQ(loop.status, exitSuccess);
}

TEST_F(JackHostTest, ASignalIsAPanicAndTheProgramSaysWhatItDid) {
    start();
    takeSignal(SIGUSR2);
    EXPECT_EQ(loop.status, std::nullopt);
    block({0x90, 60, 1});
    block();
    takeSignal(SIGUSR2);
    EXPECT_EQ(block(), (Timed{{0, {0x80, 60, 64}},
                              {0, {0xB0, 64, 0}},
                              {0, {0xB0, 66, 0}},
                              {0, {0xB0, 67, 0}},
                              {0, {0xB0, 123, 0}},
                              {0, {0xB0, 120, 0}}}));
    loop.tick();
    EXPECT_THAT(err.str(), HasSubstr("Stopped 1 note\n"));
}

TEST_F(JackHostTest, NotesEndWhenThePresetIsReadAgain) {
    writePreset("preset");
    options.preset = preset.string();
    start();
    block({0x81, 60, 1});
    block({0x92, 60, 1});
    EXPECT_EQ(block(), Timed());
    takeSignal(SIGHUP);
    EXPECT_EQ(block().front(), (std::pair{0U, Bytes{0x80, 60, 64}}));
}

TEST_F(JackHostTest, NotesThatBeganSinceThePresetWasReadAgainSoundOnWhenTheEditorShowsIt) {
    writePreset("preset");
    options.preset = preset.string();
    start().session().viewDidLoad();
    host->session().drain();
    takeSignal(SIGHUP);
    block({0x93, 70, 1});
    host->session().drain();
    EXPECT_EQ(block(), Timed());
}

TEST_F(JackHostTest, HangingUpKeepsAnEditOfAMomentAgoBeforeItReadsThePreset) {
    writePreset("preset");
    options.preset = preset.string();
    start().session().onRulesChanged(rulesCalled("edited"));
    takeSignal(SIGHUP);
    EXPECT_EQ(ruleName(), "preset");
    host->finish();
    EXPECT_EQ(readWholeFile(files.file(0)), PluginData{rulesCalled("edited")}.write());
}

TEST_F(JackHostTest, TheEditorOfAProgramThatWaitsSaysSo) {
    start().session().drain();
    const auto alert = host->session().model()->alertErrorMessage().value_or("");
    EXPECT_THAT(alert, HasSubstr("There is no JACK server \"" + *options.server + "\""));
    EXPECT_THAT(alert, HasSubstr("MIDI Quillo waits"));
    EXPECT_EQ(host->title(), "MIDI Quillo (no JACK server)");
}

TEST_F(JackHostTest, WhatIsWrongWithTheSessionIsToldBeforeWhatIsWrongWithTheServer) {
    files.add(Data{'{'});
    const auto& model = *start().session().model();
    host->session().drain();
    EXPECT_THAT(model.alertErrorMessage().value_or(""), HasSubstr("No version of the last session's rules"));
    host->session().model()->dismissAlert();
    host->session().drain();
    EXPECT_THAT(model.alertErrorMessage().value_or(""), HasSubstr("There is no JACK server"));
}

TEST_F(JackHostTest, AProgramThatShallNotWaitFails) {
    options.wait = false;
    try {
        start();
        FAIL() << "started without a server";
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.status(), exitUnavailable);
    }
}

TEST_F(JackHostTest, AVersionThatIsGoneBackToBecomesTheNewestOnlyInAProgramThatRuns) {
    const auto old = PluginData{rulesCalled("old")}.write();
    const auto last = PluginData{rulesCalled("last")}.write();
    files.add(old);
    files.add(last);
    options.goBack = 1;
    options.wait = false;
    EXPECT_THROW(start(), CommandFailure);
    host->finish(exitUnavailable);
    host.reset();
    EXPECT_EQ(readWholeFile(files.file(0)), last);
    EXPECT_EQ(files.versions().size(), 2U);
    options.wait = true;
    start();
    EXPECT_EQ(ruleName(), "old");
    host->finish();
    EXPECT_EQ(readWholeFile(files.file(0)), old);
    EXPECT_EQ(readWholeFile(files.file(1)), last);
}

TEST_F(JackHostTest, AFatalErrorOfACycleEndsTheProgram) {
    start();
    static_cast<void>(host->session().processor().fatalErrors.set("no more time"));
    loop.tick();
    EXPECT_EQ(loop.status, exitFatal);
    EXPECT_THAT(err.str(), testing::EndsWith(": No more time.\n"));
}

TEST_F(JackHostTest, ThatDelayedOutputsAreLostIsToldOnce) {
    start();
    err.str("");
    host->session().install(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 60'000))});
    for (std::size_t count = 0; count < RuleProcessor::delayCapacity; ++count) {
        block({0x90, 60, 1});
    }
    letPass(1);
    EXPECT_EQ(err.str(), "");
    block({0x90, 60, 1});
    letPass(2);
    EXPECT_EQ(err.str(), "midi-quillo-jack: more than 10,000 delayed outputs waited at one time: those that "
                         "were to leave first are lost, the ends of notes perhaps among them\n");
}

TEST_F(JackHostTest, TheLogIsPrintedWhenItIsAskedFor) {
    options.log = true;
    start();
    const EventLogEntry entry{3, EventLogEntryVariants::MIDI{MIDIMessage{0xC0, 5}}};
    host->session().logInput(entry);
    host->session().logOutput(entry);
    loop.tick();
    EXPECT_THAT(out.str(), HasSubstr("in  [3] c0 05"));
    EXPECT_THAT(out.str(), HasSubstr("out [3] c0 05"));
}

}  // namespace
}  // namespace quillo
