// SPDX-License-Identifier: GPL-3.0-or-later
// What the user is told when a server does not take the program, and what its transport says.
#include "hosts/jack/JackClient.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

ServerFailure failure(bool startServer, int status) {
    return JackClient::failureToOpen({"stage", "midi-quillo", startServer},
                                     static_cast<jack_status_t>(status), "    why\n    and why\n");
}

TEST(JackClient, AServerThatIsNotThereIsNoServer) {
    const auto none = failure(false, JackFailure | JackServerFailed);
    EXPECT_TRUE(none.noServer());
    EXPECT_STREQ(none.what(), "There is no JACK server \"stage\" to connect to.");
}

TEST(JackClient, AServerThatCannotBeStartedIsNoServerEither) {
    const auto none = failure(true, JackFailure | JackServerFailed);
    EXPECT_TRUE(none.noServer());
    EXPECT_STREQ(
        none.what(),
        "The JACK server \"stage\" is not running and cannot be started. JACK says:\n    why\n    and why");
}

TEST(JackClient, AServerThatRefusesIsOneWhetherItShouldHaveBeenStartedOrNot) {
    for (const bool startServer : {false, true}) {
        const auto refusal = failure(startServer, JackFailure | JackServerError);
        EXPECT_FALSE(refusal.noServer());
        EXPECT_STREQ(
            refusal.what(),
            "The JACK server \"stage\" does not take this program. JACK says:\n    why\n    and why");
    }
}

TEST(JackClient, ATransportThatWaitsForTheNetworkIsStartingToo) {
    EXPECT_TRUE(JackClient::isStarting(JackTransportStarting));
    EXPECT_TRUE(JackClient::isStarting(JackTransportNetStarting));
    EXPECT_FALSE(JackClient::isStarting(JackTransportStopped));
    EXPECT_FALSE(JackClient::isStarting(JackTransportRolling));
}

}  // namespace
}  // namespace quillo
