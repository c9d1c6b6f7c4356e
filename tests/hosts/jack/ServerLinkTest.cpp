// SPDX-License-Identifier: GPL-3.0-or-later
// The link to a real server, with a main thread that the test turns by hand.
#include "hosts/jack/ServerLink.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "hosts/jack/EventLoop.hpp"
#include "hosts/jack/JackPlayer.hpp"
#include "hosts/jack/JackServer.hpp"
#include "hosts/jack/WithoutCancellation.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

class ServerLinkTest : public testing::Test {
protected:
    /// Turns the main thread until this is so.
    void turnUntil(const std::function<bool()>& isSo) {
        while (!isSo()) {
            turn();
        }
    }

    void turn() {
        takeNews();
        link.tick();
        session.drain();
    }

    void takeNews() {
        constexpr int shortWhile = 5;
        pollfd watched{link.descriptor(), POLLIN, 0};
        if (::poll(&watched, 1, shortWhile) == 1) {
            link.takeNews();
        }
    }

    /// Lets so many seconds pass for the program.
    void letPass(int seconds) {
        for (int count = 0; count < seconds * EventLoop::ticksPerSecond; ++count) {
            link.tick();
        }
    }

    /// However long it takes, for the program no time passes.
    void endTheServer() {
        server.stop();
        while (link.isConnected()) {
            takeNews();
        }
    }

    /// The link leaves the server that went before it looks for another: the library frees whatever clients
    /// of a dead server are left in the process when the next one is opened.
    void loseTheServer() {
        endTheServer();
        letPass(1);
    }

    void loseTheServerWithConnectionsMadeByHand() {
        link.connect();
        {
            JackPlayer player(server.name());
            player.connectTo("midi-quillo");
            letPass(2);
            endTheServer();
        }
        letPass(1);
    }

    /// Whose cycles are so long that the test's seconds can pass without any.
    void connectToASlowServer() {
        server.stop();
        server.start({32000, 8192});
        link.connect();
    }

    void waitForSilence() {
        turnUntil([&] {
            letPass(1);
            return !link.isConnected();
        });
    }

    [[nodiscard]] bool hasSaid(const std::string& text) const {
        return err.str().find(text) != std::string::npos;
    }

    std::ostringstream err;
    Session session;
    UserMessages messages{err, session};
    JackServer server;
    ServerLink link{session,
                    messages,
                    {server.name(), "midi-quillo", false},
                    ConnectionKeeper({}, {"Grand Piano", ":at-once"})};
};

TEST_F(ServerLinkTest, ConnectionsMadeByHandComeBackWithTheServer) {
    loseTheServerWithConnectionsMadeByHand();
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    JackPlayer player(server.name());
    turnUntil([&] { return hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in"); });
    player.waitForConnection();
    EXPECT_EQ(player.play({{5, {0xC0, 1}}}, 256), (std::vector<ScriptMessage>{{5, {0xC0, 1}}}));
}

TEST_F(ServerLinkTest, ANoteThatSoundsWhenTheServerEndsIsEndedWhenItIsBack) {
    link.connect();
    {
        JackPlayer player(server.name());
        player.connectTo("midi-quillo");
        letPass(2);
        EXPECT_EQ(player.play({{0, {0x90, 60, 1}}}, 256), (std::vector<ScriptMessage>{{0, {0x90, 60, 1}}}));
        endTheServer();
    }
    letPass(1);
    server.start({});
    JackPlayer player(server.name());
    turnUntil([&] { return link.isConnected(); });
    player.waitFor({0x80, 60, 64});
}

TEST_F(ServerLinkTest, AServerThatIsBackForAMomentOnlyTakesNoConnectionAway) {
    loseTheServerWithConnectionsMadeByHand();
    for (int round = 0; round < 2; ++round) {
        err.str("");
        server.start({});
        {
            const JackPlayer player(server.name());
            turnUntil([&] { return link.isConnected(); });
            EXPECT_TRUE(hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in")) << round;
            endTheServer();
        }
        letPass(1);
    }
}

TEST_F(ServerLinkTest, AConnectionThatWaitsForItsPortOutlivesAServerWithoutThatPort) {
    loseTheServerWithConnectionsMadeByHand();
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    letPass(2);
    loseTheServer();
    server.start({});
    const JackPlayer player(server.name());
    turnUntil([&] { return link.isConnected(); });
    EXPECT_TRUE(hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in"));
}

TEST_F(ServerLinkTest, AConnectionThatTheUserHadTakenDownDoesNotComeBack) {
    link.connect();
    {
        JackPlayer player(server.name());
        player.connectTo("midi-quillo");
        letPass(2);
        ASSERT_EQ(::jack_disconnect(player.client(), player.outputName().c_str(), "midi-quillo:in"), 0);
        turnUntil([&] {
            return ::jack_port_connected(::jack_port_by_name(player.client(), "midi-quillo:in")) == 0;
        });
        letPass(2);
        endTheServer();
    }
    letPass(1);
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    JackPlayer player(server.name());
    turnUntil([&] { return hasSaid("sends to test-listener:in"); });
    EXPECT_FALSE(hasSaid("hears test-sender:out"));
}

/// Nor does it matter how often the connections are asked for meanwhile.
TEST_F(ServerLinkTest, WhatAServerTakesDownWhileItEndsComesBackWithIt) {
    link.connect();
    {
        JackPlayer player(server.name());
        player.connectTo("midi-quillo");
        letPass(2);
        ASSERT_EQ(::jack_disconnect(player.client(), "test-sender:out", "midi-quillo:in"), 0);
        while (!link.connections().sources.empty()) {
            takeNews();
        }
        letPass(1);
        endTheServer();
    }
    letPass(1);
    server.start({});
    const JackPlayer player(server.name());
    turnUntil([&] { return link.isConnected(); });
    EXPECT_TRUE(hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in"));
}

TEST_F(ServerLinkTest, AConnectionMadeByHandComesBackWithItsPortHoweverSoon) {
    link.connect();
    for (const int seconds : {0, 2}) {
        err.str("");
        {
            JackPlayer player(server.name());
            player.connectTo("midi-quillo");
            letPass(2);
            const auto [sources, targets] = link.connections();
            EXPECT_EQ(sources, std::vector<std::string>{"test-sender:out"});
            EXPECT_EQ(targets, std::vector<std::string>{"test-listener:in"});
        }
        letPass(seconds);
        const JackPlayer player(server.name());
        turnUntil([&] { return hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in"); });
        ASSERT_EQ(::jack_disconnect(player.client(), "test-sender:out", "midi-quillo:in"), 0);
        ASSERT_EQ(::jack_disconnect(player.client(), "midi-quillo:MIDIQuillo", "test-listener:in"), 0);
        turnUntil([&] { return link.connections().sources.empty() && link.connections().targets.empty(); });
        letPass(1);
    }
}

TEST_F(ServerLinkTest, AConnectionOutlivesThatItsPortIsThereBeforeItsClientIsActive) {
    const std::unique_ptr<jack_client_t, decltype(&::jack_client_close)> late(
        ::jack_client_open("late", static_cast<jack_options_t>(JackNoStartServer | JackServerName), nullptr,
                           server.name().c_str()),
        &::jack_client_close);
    ASSERT_NE(late, nullptr);
    ::jack_set_process_callback(late.get(), [](jack_nframes_t, void*) { return 0; }, nullptr);
    ::jack_port_register(late.get(), "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    link.become("midi-quillo", {{}, {"late:in"}});
    link.connect();
    letPass(3);
    EXPECT_EQ(link.connections().targets, std::vector<std::string>{"late:in"});
    EXPECT_FALSE(hasSaid("sends to late:in"));
    ASSERT_EQ(::jack_activate(late.get()), 0);
    turnUntil([&] { return hasSaid("sends to late:in"); });
    ASSERT_EQ(::jack_disconnect(late.get(), "midi-quillo:MIDIQuillo", "late:in"), 0);
    turnUntil([&] { return link.connections().targets.empty(); });
}

/// What a window shows: the status as it was when the link last said that it may be another one.
class ServerStatusTest : public ServerLinkTest {
protected:
    ServerStatusTest() {
        link.setOnChange([this] { shown = link.status(); });
    }

    /// Turns the main thread, without its clock, until the window shows this.
    void waitUntilShown(const std::function<bool(const ServerStatus& status)>& isSo) {
        while (!shown || !isSo(*shown)) {
            takeNews();
        }
    }

    static bool holds(const std::vector<ServerStatus::Port>& ports, const std::string& name, bool connected) {
        return std::ranges::any_of(ports, [&](const auto& shownPort) {
            return shownPort.port.name == name && shownPort.isConnected == connected;
        });
    }

    void waitForSource(bool connected) {
        waitUntilShown(
            [&](const auto& status) { return holds(status.sources, "test-sender:out", connected); });
    }
    void waitForTarget(bool connected) {
        waitUntilShown(
            [&](const auto& status) { return holds(status.targets, "test-listener:in", connected); });
    }

    const PortDescription source{"test-sender:out", {}, true, false};
    const PortDescription target{"test-listener:in", {}, false, false};
    std::optional<ServerStatus> shown;
};

TEST_F(ServerStatusTest, IsThereWhileAServerIs) {
    EXPECT_FALSE(link.status());
    link.connect();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->server, server.name());
    EXPECT_EQ(shown->sampleRate, 48000U);
    EXPECT_TRUE(shown->sources.empty() && shown->targets.empty()) << "Our own ports are left out.";
    endTheServer();
    EXPECT_FALSE(shown);
}

TEST_F(ServerStatusTest, FollowsPortsThatComeAndGoAndConnectionsMadeByAnybody) {
    link.connect();
    {
        const JackPlayer player(server.name());
        waitForSource(false);
        waitForTarget(false);
        ASSERT_EQ(::jack_connect(player.client(), source.name.c_str(), "midi-quillo:in"), 0);
        waitForSource(true);
        ASSERT_EQ(::jack_disconnect(player.client(), source.name.c_str(), "midi-quillo:in"), 0);
        waitForSource(false);
    }
    waitUntilShown([](const auto& status) { return status.sources.empty() && status.targets.empty(); });
}

/// A client that holds the server's cycle, for as long as the server waits for a client.
class CycleHolder {
public:
    explicit CycleHolder(const std::string& server)
        : client_(::jack_client_open("holder",
                                     static_cast<jack_options_t>(JackNoStartServer | JackServerName), nullptr,
                                     server.c_str()),
                  &::jack_client_close) {
        if (!client_) {
            throw std::runtime_error("the server does not take the holder of its cycle");
        }
        ::jack_set_process_callback(client_.get(), &process, this);
        ::jack_activate(client_.get());
    }
    ~CycleHolder() {
        release();
        ::jack_deactivate(client_.get());
    }
    CycleHolder(const CycleHolder&) = delete;
    CycleHolder& operator=(const CycleHolder&) = delete;

    /// Once. Returns in a cycle, which ends with `release`.
    void hold() {
        held_ = true;
        isInside_.wait(false);
    }
    void release() {
        held_ = false;
        held_.notify_all();
    }

private:
    static int process(jack_nframes_t /*frames*/, void* self) {
        withoutCancellation([&] { static_cast<CycleHolder*>(self)->waitWhileHeld(); });
        return 0;
    }

    void waitWhileHeld() {
        if (held_) {
            isInside_ = true;
            isInside_.notify_all();
            held_.wait(true);
        }
    }

    std::atomic<bool> held_{false};
    std::atomic<bool> isInside_{false};
    const std::unique_ptr<jack_client_t, decltype(&::jack_client_close)> client_;
};

/// The server tells of a connection at once, and shows it only from the next cycle on.
TEST_F(ServerStatusTest, FollowsAConnectionThatIsInForceLongAfterTheServerHasToldOfIt) {
    link.connect();
    const JackPlayer player(server.name());
    waitForSource(false);
    waitForTarget(false);
    CycleHolder holder(server.name());
    holder.hold();
    ASSERT_EQ(::jack_connect(player.client(), source.name.c_str(), "midi-quillo:in"), 0);
    shown.reset();
    waitForSource(false);
    holder.release();
    waitForSource(true);
}

TEST_F(ServerStatusTest, WhatTheUserPicksIsConnectedAndTakenDown) {
    link.connect();
    JackPlayer player(server.name());
    int calls = 0;
    link.setRunCall([&](const ServerLink::Call& call) {
        ++calls;
        call();
    });
    link.setConnected(source, true);
    link.setConnected(target, true);
    waitForSource(true);
    waitForTarget(true);
    player.waitForConnection();
    link.setConnected(source, false);
    waitForSource(false);
    EXPECT_TRUE(holds(shown->targets, target.name, true));
    EXPECT_TRUE(hasSaid("hears test-sender:out") && hasSaid("sends to test-listener:in") &&
                hasSaid("no longer hears test-sender:out"));
    EXPECT_EQ(calls, 3) << "A server that hangs must not keep the program for ever.";
}

TEST_F(ServerStatusTest, WhatWasPickedAMomentBeforeTheServerWentComesBackWithItAndWhatWasTakenDownDoesNot) {
    link.connect();
    {
        const JackPlayer player(server.name());
        link.setConnected(source, true);
        waitForSource(true);
        letPass(2);
        link.setConnected(source, false);
        link.setConnected(target, true);
        endTheServer();
    }
    letPass(1);
    err.str("");
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    const JackPlayer player(server.name());
    turnUntil([&] { return hasSaid("sends to test-listener:in"); });
    EXPECT_FALSE(hasSaid("hears test-sender:out"));
}

TEST_F(ServerStatusTest, WhatWasPickedInTheSecondBeforeTheServerWentComesBackWithIt) {
    link.connect();
    {
        const JackPlayer player(server.name());
        link.setConnected(source, true);
        letPass(1);
        endTheServer();
    }
    letPass(1);
    err.str("");
    server.start({});
    const JackPlayer player(server.name());
    turnUntil([&] { return link.isConnected(); });
    EXPECT_TRUE(hasSaid("hears test-sender:out"));
}

TEST_F(ServerStatusTest, WithoutAServerNothingIsPicked) {
    link.setConnected(source, true);
    EXPECT_EQ(err.str(), "");
}

TEST_F(ServerLinkTest, APortThatIsGivenItsAliasAfterItHasAppearedIsConnected) {
    link.connect();
    const JackPlayer player(server.name());
    const auto makePort = [&](const char* name) {
        return ::jack_port_register(player.client(), name, JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    };
    auto* late = makePort("late");
    makePort("at-once");
    turnUntil([&] { return hasSaid("sends to test-sender:at-once"); });
    EXPECT_FALSE(hasSaid("sends to test-sender:late"));
    ASSERT_EQ(::jack_port_set_alias(late, "studio:Grand Piano"), 0);
    letPass(2);
    EXPECT_TRUE(hasSaid("sends to test-sender:late"));
}

TEST_F(ServerLinkTest, AServerThatHangsWhenAPortAppearsDoesNotKeepTheProgramForEver) {
    link.connect();
    int calls = 0;
    link.setRunCall([&](const ServerLink::Call& call) {
        EXPECT_FALSE(hasSaid("sends to"));
        call();
        EXPECT_TRUE(hasSaid("sends to test-sender:at-once"));
        ++calls;
    });
    const JackPlayer player(server.name());
    ::jack_port_register(player.client(), "at-once", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    turnUntil([&] { return hasSaid("sends to test-sender:at-once"); });
    EXPECT_EQ(calls, 1);
}

TEST_F(ServerLinkTest, TheEditorSaysThatTheServerIsGoneUntilItIsBack) {
    session.viewDidLoad();
    std::vector<bool> told;  // what changes told of the link; ports may change besides
    link.setOnChange([&] {
        if (told.empty() || told.back() != link.isConnected()) {
            told.push_back(link.isConnected());
        }
    });
    link.connect();
    EXPECT_EQ(link.clientName(), "midi-quillo");
    server.kill();
    turnUntil([&] { return !link.isConnected(); });
    session.drain();
    EXPECT_THAT(session.model()->alertErrorMessage().value_or(""), HasSubstr("The JACK server has ended"));
    EXPECT_EQ(link.clientName(), "");
    letPass(1);
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    session.drain();
    EXPECT_EQ(session.model()->alertErrorMessage(), std::nullopt);
    EXPECT_THAT(told, ElementsAre(true, false, true));
}

TEST_F(ServerLinkTest, AnotherAlertIsNotTakenAwayWhenTheServerIsBack) {
    session.viewDidLoad();
    link.connect();
    server.kill();
    turnUntil([&] { return !link.isConnected(); });
    messages.warn("Something else.");
    letPass(1);
    server.start({});
    turnUntil([&] { return link.isConnected(); });
    session.drain();
    EXPECT_EQ(session.model()->alertErrorMessage(), "Something else.");
}

TEST_F(ServerLinkTest, AServerThatIsBackAndRefusesTheProgramIsNamedOnceAndAgainWhenItHasTakenIt) {
    const auto countOfRefusals = [this] {
        constexpr std::string_view refusal = "has no room for the port";
        const auto text = err.str();
        int count = 0;
        for (auto at = text.find(refusal); at != std::string::npos; at = text.find(refusal, at + 1)) {
            ++count;
        }
        return count;
    };
    link.connect();
    for (int times = 1; times <= 2; ++times) {
        loseTheServer();
        server.start({.mostPorts = 5});
        letPass(3);
        EXPECT_FALSE(link.isConnected());
        EXPECT_EQ(countOfRefusals(), times);
        server.stop();
        server.start({});
        turnUntil([&] { return link.isConnected(); });
    }
}

TEST_F(ServerLinkTest, AServerThatFallsSilentCountsAsGoneAndIsTakenUpAgain) {
    connectToASlowServer();
    waitForSilence();
    EXPECT_TRUE(hasSaid("The JACK server has ended, or dropped this program."));
    turnUntil([&] { return link.isConnected(); });
    EXPECT_TRUE(hasSaid("back on the JACK server"));
}

TEST_F(ServerLinkTest, TheEditorShowsThatAServerIsSilentBeforeItIsLeftWhichMayHang) {
    connectToASlowServer();
    int calls = 0;
    link.setRunCall([&](const ServerLink::Call& call) {
        EXPECT_THAT(session.model()->alertErrorMessage().value_or(""),
                    HasSubstr("The JACK server has ended"));
        EXPECT_FALSE(link.isConnected());
        ++calls;
        call();
    });
    waitForSilence();
    EXPECT_EQ(calls, 0);
    turnUntil([&] { return link.isConnected(); });
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace quillo
