// SPDX-License-Identifier: GPL-3.0-or-later
// The server's transport as the unit sees it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <jack/transport.h>

#include "hosts/jack/JackProgramFixture.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int longEnough = 20;  ///< cycles in which everything that was to come has come

const Bytes started{0xB0, 20, 1};
const Bytes continued{0xB0, 21, 1};
const Bytes stopped{0xB0, 22, 1};

class JackTransport : public testing::Test, public JackProgramFixture {
protected:
    static std::vector<Rule> ruleForEachChange() {
        const auto onEach = [](HostTransportTriggerVariantsV2 trigger, std::uint8_t controller) {
            return rule(onHost(trigger), send(controlChange(0, controller, 1)));
        };
        return {onEach(HostTransportTriggerVariantsV2::Start, 20),
                onEach(HostTransportTriggerVariantsV2::Continue, 21),
                onEach(HostTransportTriggerVariantsV2::Stop, 22)};
    }

    /// Waits for this change, and until no other could still come; the changes that came.
    std::vector<Bytes> changesUntil(const Bytes& change) {
        player.waitFor(change);
        player.letPass(longEnough);
        auto changes = player.arrived();
        player.forget();
        return changes;
    }

    void start() { ::jack_transport_start(player.client()); }
    void stop() { ::jack_transport_stop(player.client()); }
    void locate(jack_nframes_t frame) { ::jack_transport_locate(player.client(), frame); }

    JackServer server;
    std::unique_ptr<ChildProcess> program = runOn(server.name(), ruleForEachChange());
    JackPlayer player{server.name()};
};

TEST_F(JackTransport, StartsAtTheBeginningContinuesElsewhereAndStops) {
    player.connectTo("midi-quillo");
    start();
    EXPECT_THAT(changesUntil(started), ElementsAre(started));
    stop();
    EXPECT_THAT(changesUntil(stopped), ElementsAre(stopped));
    start();
    EXPECT_THAT(changesUntil(continued), ElementsAre(continued));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackTransport, ARelocationWhileItStandsIsNoChangeAndTellsWhereItStarts) {
    player.connectTo("midi-quillo");
    locate(480000);
    player.letPass(longEnough);
    EXPECT_THAT(player.arrived(), IsEmpty());
    start();
    EXPECT_THAT(changesUntil(continued), ElementsAre(continued));
    stop();
    EXPECT_THAT(changesUntil(stopped), ElementsAre(stopped));
    locate(0);
    player.letPass(longEnough);
    start();
    EXPECT_THAT(changesUntil(started), ElementsAre(started));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackTransport, ARelocationWhileItRollsIsOneChangeAndNoStop) {
    player.connectTo("midi-quillo");
    start();
    EXPECT_THAT(changesUntil(started), ElementsAre(started));
    locate(480000);
    EXPECT_THAT(changesUntil(continued), ElementsAre(continued));
    locate(0);
    EXPECT_THAT(changesUntil(started), ElementsAre(started));
    EXPECT_EQ(end(*program), 0);
}

TEST_F(JackTransport, WhatRollsAlreadyWhenTheProgramComesIsAContinuation) {
    locate(480000);
    start();
    jack_position_t position;
    while (::jack_transport_query(player.client(), &position) != JackTransportRolling) {
        player.letPass(1);
    }
    EXPECT_EQ(end(*program), 0);
    program =
        runOn(server.name(), ruleForEachChange(), {"--connect-in", "^test-", "--connect-out", "^test-"});
    EXPECT_THAT(changesUntil(continued), ElementsAre(continued));
    EXPECT_EQ(end(*program), 0);
}

}  // namespace
}  // namespace quillo
