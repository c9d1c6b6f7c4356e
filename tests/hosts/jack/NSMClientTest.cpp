// SPDX-License-Identifier: GPL-3.0-or-later
// The protocol, message by message.
#include "hosts/jack/NSMClient.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

#include "hosts/jack/NSMServer.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;

/// Notes what it is asked for, and answers as the test wants.
class NotingProgram final : public NSMClient::Program {
public:
    NSMClient::Outcome openProject(const NSMClient::Project& project) override {
        asked += "open " + project.path + " " + project.clientID + "\n";
        return outcome;
    }
    NSMClient::Outcome saveProject() override {
        asked += "save\n";
        return throws ? throw std::runtime_error("The disk is full.") : outcome;
    }
    void showWindow(bool isShown) override { asked += isShown ? "show\n" : "hide\n"; }

    std::string asked;
    NSMClient::Outcome outcome;
    bool throws = false;
};

class NSMClientTest : public testing::Test {
protected:
    /// What the manager has sent reaches the program.
    void receive() {
        constexpr int patience = 60'000;
        pollfd watched{client.descriptor(), POLLIN, 0};
        ASSERT_EQ(::poll(&watched, 1, patience), 1);
        client.receive();
    }

    /// The program becomes part of the session. The manager's name for it.
    std::string join(bool hasWindow = false) {
        client.announce({"midi-quillo", "midi-quillo-jack", hasWindow});
        auto address = server.takeClient();
        receive();
        return address;
    }

    std::string ask(const std::string& address, const std::string& path,
                    const std::vector<std::string>& words = {}) {
        server.send(address, path, words);
        receive();
        return server.answer(address, path);
    }

    void letPass(int ticks) {
        for (int count = 0; count < ticks; ++count) {
            client.tick();
        }
    }

    NSMServer server;
    NotingProgram program;
    NSMClient client{server.url(), program};
};

TEST_F(NSMClientTest, TheProgramIsAnnouncedWithItsNameItsAbilitiesAndItsProcess) {
    client.announce({"midi-quillo", "midi-quillo-jack", true});
    EXPECT_EQ(server.waitFor("/nsm/server/announce").arguments,
              (std::vector<std::string>{"midi-quillo", ":switch:dirty:optional-gui:", "midi-quillo-jack", "1",
                                        "1", std::to_string(::getpid())}));
}

TEST_F(NSMClientTest, AProgramWithoutAWindowCanShowNone) {
    client.announce({"midi-quillo", "midi-quillo-jack", false});
    EXPECT_EQ(server.waitFor("/nsm/server/announce").arguments[1], ":switch:dirty:");
    client.setWindowShown(true);
    EXPECT_EQ(server.whatIsThere(), "");
}

TEST_F(NSMClientTest, AWindowIsHiddenUntilTheManagerLearnsOtherwise) {
    const auto address = join(true);
    server.waitFor("/nsm/client/gui_is_hidden", address);
    client.setWindowShown(true);
    server.waitFor("/nsm/client/gui_is_shown", address);
    client.setWindowShown(false);
    server.waitFor("/nsm/client/gui_is_hidden", address);
    EXPECT_EQ(server.whatIsThere(), "");
}

TEST_F(NSMClientTest, WhatTheManagerAsksForReachesTheProgramAndIsAnsweredWhenItIsDone) {
    const auto address = join(true);
    EXPECT_EQ(ask(address, "/nsm/client/open", {"/songs/x/midi-quillo.nA", "x", "midi-quillo.nA"}), "OK");
    EXPECT_EQ(ask(address, "/nsm/client/save"), "OK");
    server.send(address, "/nsm/client/show_optional_gui");
    receive();
    server.send(address, "/nsm/client/hide_optional_gui");
    receive();
    EXPECT_EQ(program.asked, "open /songs/x/midi-quillo.nA midi-quillo.nA\nsave\nshow\nhide\n");
}

TEST_F(NSMClientTest, WhatTheManagerOnlyMentionsIsNoHarm) {
    server.send(join(), "/nsm/client/session_is_loaded");
    receive();
    EXPECT_EQ(program.asked, "");
    EXPECT_EQ(server.whatIsThere(), "");
}

TEST_F(NSMClientTest, AFailureIsAnErrorWithTheProtocolsNumberAndWords) {
    const auto address = join();
    program.outcome = NSMClient::Failure{NSMClient::Failure::badProject, "The file is damaged."};
    server.send(address, "/nsm/client/open", {"/x", "x", "midi-quillo.nA"});
    receive();
    EXPECT_EQ(server.waitFor("/error", address).arguments,
              (std::vector<std::string>{"/nsm/client/open", "-9", "The file is damaged."}));
    program.throws = true;
    server.send(address, "/nsm/client/save");
    receive();
    EXPECT_EQ(server.waitFor("/error", address).arguments,
              (std::vector<std::string>{"/nsm/client/save", "-1", "The disk is full."}));
}

TEST_F(NSMClientTest, TheManagerLearnsOfUnsavedChangesOnce) {
    const auto address = join();
    client.setDirty(false);
    client.setDirty(true);
    client.setDirty(true);
    client.setDirty(false);
    server.waitFor("/nsm/client/is_dirty", address);
    server.waitFor("/nsm/client/is_clean", address);
    EXPECT_EQ(server.whatIsThere(), "");
}

TEST_F(NSMClientTest, AManagerHasFiveSecondsToAnswer) {
    client.announce({"midi-quillo", "midi-quillo-jack", false});
    letPass(5 * EventLoop::ticksPerSecond - 1);
    EXPECT_EQ(client.refusal(), std::nullopt);
    letPass(1);
    EXPECT_EQ(client.refusal(), "No session manager answers at " + server.url() + ", as NSM_URL says.");
}

TEST_F(NSMClientTest, OneThatHasAnsweredMayTakeItsTime) {
    join();
    letPass(60 * EventLoop::ticksPerSecond);
    EXPECT_EQ(client.refusal(), std::nullopt);
}

TEST_F(NSMClientTest, AManagerThatRefusesTheProgramIsHeardAndWhatComesLaterIsIgnored) {
    client.announce({"midi-quillo", "midi-quillo-jack", false});
    const auto address = server.waitFor("/nsm/server/announce").client;
    server.sendError(address, "/nsm/server/announce", -2, "Too\nnew.");
    receive();
    EXPECT_EQ(client.refusal(), "The session manager refuses this program: Too\\nnew.");
    server.send(address, "/nsm/client/open", {"/x", "x", "midi-quillo.nA"});
    receive();
    EXPECT_EQ(program.asked, "");
}

TEST_F(NSMClientTest, WhatIsNoAddressIsRejectedInWords) {
    for (const auto* bad : {"", "nonsense", "osc.tcp://localhost:1234/", "http://localhost/"}) {
        try {
            const NSMClient lost(bad, program);
            ADD_FAILURE() << bad << " was taken";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr("NSM_URL is \"" + std::string(bad) + "\""));
        }
    }
}

}  // namespace
}  // namespace quillo
