// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "engine/SharedBytes.hpp"
#include "realtime/CallCounter.hpp"
#include "realtime/EveryRule.hpp"
#include "realtime/RealTimeHost.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using test::CallCounter;
using test::CallCounts;
using test::everyMessage;
using test::noCalls;
using test::RealTimeHost;
using test::systemExclusiveOf;

/// The delay queue and the log hold a long message after its rule is gone: the last to let go is the render
/// thread.
TEST(RetiredMessages, AreFreedByAnotherThreadThanTheRenderThread) {
    RealTimeHost host;
    auto& processor = *host.unit->processor;
    processor.setRules({test::rule(test::onNoteOn(), test::send(systemExclusiveOf(1000), 100))});
    host.push(everyMessage[0]);
    ASSERT_EQ(host.render(), noErr);
    processor.setRules({});
    SharedBytes::freeRetired();

    constexpr CallCounts messageAndItsBytes{0, 2, 0};
    JoinedThread([&] {
        host.skip(44100);
        EXPECT_EQ(host.render(), noErr);
        const CallCounter::Scope scope;
        host.forgetLog();
        EXPECT_EQ(scope.counts(), noCalls);
    }).join();
    EXPECT_EQ(host.received(0xF0), 1U);
    EXPECT_EQ(host.calls(), noCalls);

    const CallCounter::Scope scope;
    SharedBytes::freeRetired();
    EXPECT_EQ(scope.counts(), messageAndItsBytes);
}

}  // namespace
}  // namespace quillo
