// SPDX-License-Identifier: GPL-3.0-or-later
// The program under a session manager, without a JACK server and without a window of its own.
#include "hosts/jack/ManagedSession.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>

#include <cstdlib>
#include <sstream>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/FakeWindow.hpp"
#include "hosts/jack/HandTurnedLoop.hpp"
#include "hosts/jack/JackHost.hpp"
#include "hosts/jack/JackServer.hpp"
#include "hosts/jack/NSMServer.hpp"
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

std::vector<Rule> loadRulesCalled(const std::string& name) {
    return {rule(onLoad(), send(controlChange(0, 7, 5)), name)};
}

class ManagedSessionTest : public testing::Test {
protected:
    ManagedSessionTest() {
        ::setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
        ::setenv("NSM_URL", manager.url().c_str(), 1);
        options.server = JackServer::takeName();
    }
    ~ManagedSessionTest() override { ::unsetenv("NSM_URL"); }

    /// The program up to its loop.
    void start() {
        host.emplace(options, Console{in, out, err}, loop, signals);
        host->loadRules();
        host->setWindow(window);
        host->start();
    }

    /// The program in the session; what the manager calls it.
    void join() {
        start();
        program = manager.takeClient();
        receive();
    }

    void receive() {
        constexpr int patience = 60'000;
        std::vector<pollfd> watched;
        for (const auto& [descriptor, callback] : loop.callbacks) {
            watched.push_back({descriptor, POLLIN, 0});
        }
        ASSERT_GE(::poll(watched.data(), watched.size(), patience), 1);
        for (const auto& found : watched) {
            if (found.revents != 0) {
                loop.callbacks.at(found.fd)();
            }
        }
    }

    std::string ask(const std::string& path, const std::vector<std::string>& words = {}) {
        manager.send(program, path, words);
        receive();
        return manager.answer(program, path);
    }
    std::string open(const std::string& name) {
        return ask("/nsm/client/open", {project(name), "a song", "midi-quillo." + name});
    }
    std::string save() { return ask("/nsm/client/save"); }

    void letPass(int seconds) {
        for (int count = 0; count < seconds * EventLoop::ticksPerSecond; ++count) {
            loop.tick();
        }
    }

    [[nodiscard]] std::filesystem::path project(const std::string& name) const {
        return folder.path() / "songs" / "a song" / ("midi-quillo." + name);
    }
    [[nodiscard]] std::filesystem::path rulesOf(const std::string& name) const {
        return project(name) / "rules.json";
    }
    void writeProject(const std::string& name, const Data& document) const {
        std::filesystem::create_directories(project(name));
        writeWholeFile(rulesOf(name), document, Existing::replace);
    }

    std::string ruleName() {
        const auto rules = host->session().processor().rules();
        return rules.empty() ? "" : rules.front().name;
    }

    /// What leaves in a block without messages.
    Timed block() {
        TestOutput output;
        auto& renderer = host->session().renderer();
        renderer.begin(64, output);
        EXPECT_EQ(renderer.end(), noErr);
        return output.take();
    }

    TemporaryFolder folder;
    NSMServer manager;
    std::string program;
    JackOptions options;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    HandTurnedLoop loop;
    FakeWindow window;
    SignalDescriptor signals{JackHost::ownSignals};
    std::optional<JackHost> host;
};

TEST_F(ManagedSessionTest, BeforeAProjectIsOpenedThereAreNoRulesNoServerAndNoWindow) {
    SessionFiles(folder / "state" / "midi-quillo", "midi-quillo")
        .add(PluginData{loadRulesCalled("own")}.write());
    join();
    letPass(60);
    EXPECT_EQ(ruleName(), "");
    EXPECT_FALSE(window.memory.isShown);
    EXPECT_EQ(err.str(), "");
    EXPECT_EQ(save(), "-6");
}

TEST_F(ManagedSessionTest, APresetIsNotReadAgain) {
    const auto preset = folder / "preset.json";
    writeWholeFile(preset, PluginData{loadRulesCalled("preset")}.write(), Existing::keep);
    options.preset = preset.string();
    writeProject("nA", PluginData{loadRulesCalled("project")}.write());
    join();
    open("nA");
    ASSERT_EQ(ruleName(), "project");
    ::kill(::getpid(), SIGHUP);
    receive();
    EXPECT_THAT(err.str(), HasSubstr("the session manager says what the rules are: no preset is read again"));
    EXPECT_EQ(ruleName(), "project");
}

TEST_F(ManagedSessionTest, AProjectThatIsNotThereIsANewOneAndOnlyTheManagersWishWritesIt) {
    join();
    EXPECT_EQ(open("nA"), "OK");
    EXPECT_THAT(err.str(), HasSubstr("There is no JACK server"));
    EXPECT_THAT(err.str(), HasSubstr("MIDI Quillo waits"));
    host->session().onRulesChanged(loadRulesCalled("edited"));
    letPass(60);
    EXPECT_FALSE(std::filesystem::exists(folder / "songs"));
    EXPECT_EQ(save(), "OK");
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("edited")}.write());
    EXPECT_FALSE(std::filesystem::exists(folder / "state"));
}

TEST_F(ManagedSessionTest, TheRulesOfAProjectComeBack) {
    writeProject("nA", PluginData{loadRulesCalled("saved")}.write());
    join();
    EXPECT_EQ(open("nA"), "OK");
    EXPECT_EQ(ruleName(), "saved");
}

TEST_F(ManagedSessionTest, TheManagerLearnsOfEditsUntilTheyAreSaved) {
    join();
    open("nA");
    host->session().onRulesChanged(loadRulesCalled("edited"));
    manager.waitFor("/nsm/client/is_dirty");
    save();
    manager.waitFor("/nsm/client/is_clean");
    open("nB");
    EXPECT_EQ(manager.whatIsThere(), " /nsm/client/gui_is_hidden");
}

TEST_F(ManagedSessionTest, TheManagerLearnsOfConnectionsThatTheUserChanges) {
    join();
    open("nA");
    host->setConnected({"synth:in", {}, false, false}, true);
    manager.waitFor("/nsm/client/is_dirty");
    save();
    manager.waitFor("/nsm/client/is_clean");
    host->setConnected({"synth:in", {}, false, false}, false);
    manager.waitFor("/nsm/client/is_dirty");
}

TEST_F(ManagedSessionTest, TheEndSavesNothing) {
    writeProject("nA", PluginData{loadRulesCalled("saved")}.write());
    join();
    open("nA");
    host->session().onRulesChanged(loadRulesCalled("edited"));
    EXPECT_EQ(host->finish(), exitSuccess);
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("saved")}.write());
}

TEST_F(ManagedSessionTest, WhatIsTypedAndNotConfirmedIsSaved) {
    join();
    open("nA");
    window.typed = [this] { host->session().onRulesChanged(loadRulesCalled("typed")); };
    save();
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("typed")}.write());
    manager.waitFor("/nsm/client/is_clean");
}

TEST_F(ManagedSessionTest, AnotherProjectTakesThePlaceOfTheFirstAndCountsAsLoaded) {
    writeProject("nA", PluginData{loadRulesCalled("first")}.write());
    writeProject("nB", PluginData{loadRulesCalled("second")}.write());
    const Timed loaded{{0, {0xB0, 7, 5}}};
    join();
    open("nA");
    EXPECT_EQ(block(), loaded);
    EXPECT_EQ(block(), Timed());
    EXPECT_EQ(open("nB"), "OK");
    EXPECT_EQ(ruleName(), "second");
    EXPECT_EQ(block(), loaded);
    host->session().onRulesChanged(loadRulesCalled("edited"));
    save();
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("first")}.write());
    EXPECT_EQ(readWholeFile(rulesOf("nB")), PluginData{loadRulesCalled("edited")}.write());
}

TEST_F(ManagedSessionTest, WhatWaitsInAProjectIsNotSentInTheNext) {
    writeProject("nA", PluginData{{rule(onLoad(), send(controlChange(0, 7, 5), 10))}}.write());
    join();
    open("nA");
    EXPECT_EQ(block(), Timed());
    open("nB");
    for (int count = 0; count < 1000; ++count) {
        EXPECT_EQ(block(), Timed());
    }
}

TEST_F(ManagedSessionTest, TheServerOfAProjectIsLeftAndTheNextOnesSoughtInCallsThatMayHang) {
    join();
    open("nA");
    int calls = 0;
    host->link().setRunCall([&](const ServerLink::Call& call) {
        ++calls;
        call();
    });
    open("nB");
    EXPECT_EQ(calls, 2);
}

TEST_F(ManagedSessionTest, ADamagedProjectIsAnErrorAndStaysAsItIs) {
    writeProject("nA", PluginData{loadRulesCalled("first")}.write());
    writeProject("nB", Data{'{'});
    join();
    open("nA");
    EXPECT_EQ(open("nB"), "-9");
    EXPECT_EQ(ruleName(), "");
    EXPECT_EQ(save(), "-6");
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("first")}.write());
    EXPECT_EQ(readWholeFile(rulesOf("nB")), Data{'{'});
}

TEST_F(ManagedSessionTest, TheWindowSaysThatAProjectCannotBeOpenedUntilAnotherOneIs) {
    writeProject("nB", Data{'{'});
    join();
    open("nA");
    int changes = 0;
    host->setOnChange([&] { ++changes; });
    open("nB");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(host->title(), "MIDI Quillo (no project)");
    const auto& model = *host->session().model();
    host->session().drain();
    EXPECT_THAT(model.alertErrorMessage().value_or(""),
                testing::AllOf(testing::StartsWith(rulesOf("nB").string() + " cannot be used: "),
                               testing::EndsWith("\nNo project is open: nothing here can be saved.")));
    open("nC");
    host->session().drain();
    EXPECT_THAT(model.alertErrorMessage().value_or(""), HasSubstr("There is no JACK server"));
}

TEST_F(ManagedSessionTest, WhatCannotBeSavedIsAnErrorAndStaysUnsaved) {
    writeWholeFile(folder / "songs", Data{1}, Existing::keep);
    join();
    open("nA");
    host->session().onRulesChanged(loadRulesCalled("edited"));
    EXPECT_EQ(save(), "-1");
    manager.waitFor("/nsm/client/is_dirty");
    EXPECT_THAT(manager.whatIsThere(), testing::Not(HasSubstr("is_clean")));
}

TEST_F(ManagedSessionTest, SettingsThatCouldNotBeSavedAreSavedTheNextTime) {
    const auto settings = project("nA") / "rules.settings";
    join();
    open("nA");
    std::filesystem::create_directories(settings);
    window.memory.place = "10 20 300 400";
    EXPECT_EQ(save(), "-1");
    EXPECT_EQ(save(), "-1");
    std::filesystem::remove(settings);
    EXPECT_EQ(save(), "OK");
    EXPECT_EQ(readSettings(settings).window.place, "10 20 300 400");
}

TEST_F(ManagedSessionTest, TheWindowIsAsItWasWhenTheProjectWasSaved) {
    join();
    open("nA");
    EXPECT_FALSE(window.memory.isShown);
    manager.send(program, "/nsm/client/show_optional_gui");
    receive();
    EXPECT_TRUE(window.memory.isShown);
    manager.waitFor("/nsm/client/gui_is_shown");
    window.memory.place = "10 20 300 400";
    window.memory.presetFolder = "/home/me/my presets";
    save();
    open("nB");
    EXPECT_FALSE(window.memory.isShown);
    EXPECT_EQ(window.memory.place, "");
    open("nA");
    EXPECT_TRUE(window.memory.isShown);
    EXPECT_EQ(window.memory.place, "10 20 300 400");
    EXPECT_EQ(window.memory.presetFolder, "/home/me/my presets");
}

TEST_F(ManagedSessionTest, ClosingTheWindowHidesIt) {
    join();
    open("nA");
    manager.send(program, "/nsm/client/show_optional_gui");
    receive();
    manager.waitFor("/nsm/client/gui_is_shown");
    host->windowClosed();
    EXPECT_FALSE(window.memory.isShown);
    manager.waitFor("/nsm/client/gui_is_hidden");
    EXPECT_EQ(loop.status, std::nullopt);
}

TEST_F(ManagedSessionTest, ASignalSavesTheProjectAsTheManagerDoes) {
    join();
    open("nA");
    host->session().onRulesChanged(loadRulesCalled("edited"));
    ::kill(::getpid(), SIGUSR1);
    receive();
    EXPECT_EQ(readWholeFile(rulesOf("nA")), PluginData{loadRulesCalled("edited")}.write());
    EXPECT_THAT(err.str(), HasSubstr("the rules are saved in " + rulesOf("nA").string()));
    manager.waitFor("/nsm/client/is_clean");
}

TEST_F(ManagedSessionTest, LeftoversOfAProgramThatWasKilledGo) {
    writeProject("nA", PluginData{loadRulesCalled("saved")}.write());
    const auto leftover = project("nA") / "rules.json.tmp-123-0";
    writeWholeFile(leftover, Data{'{'}, Existing::keep);
    join();
    open("nA");
    EXPECT_FALSE(std::filesystem::exists(leftover));
}

TEST_F(ManagedSessionTest, WithoutAnAnswerTheProgramGoesOnByItself) {
    SessionFiles(folder / "state" / "midi-quillo", "midi-quillo")
        .add(PluginData{loadRulesCalled("own")}.write());
    start();
    letPass(5);
    EXPECT_THAT(err.str(), HasSubstr("No session manager answers at " + manager.url()));
    EXPECT_THAT(err.str(), HasSubstr("MIDI Quillo goes on without a session."));
    EXPECT_THAT(err.str(), HasSubstr("MIDI Quillo waits"));
    EXPECT_EQ(ruleName(), "own");
    EXPECT_TRUE(window.memory.isShown);
    host->windowClosed();
    EXPECT_EQ(loop.status, exitSuccess);
}

TEST_F(ManagedSessionTest, AnAddressThatIsNoneIsToldAndTheProgramGoesOnByItself) {
    ::setenv("NSM_URL", "nonsense", 1);
    start();
    EXPECT_THAT(err.str(), HasSubstr("NSM_URL is \"nonsense\""));
    EXPECT_TRUE(window.memory.isShown);
}

TEST_F(ManagedSessionTest, AProgramThatMayNotWaitForAServerEndsWhenNobodyAnswers) {
    options.window = false;
    start();
    letPass(5);
    EXPECT_EQ(loop.status, exitUnavailable);
    EXPECT_THAT(err.str(), HasSubstr("There is no JACK server"));
}

}  // namespace
}  // namespace quillo
