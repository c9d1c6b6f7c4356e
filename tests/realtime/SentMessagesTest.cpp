// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "realtime/CallCounter.hpp"
#include "realtime/RealTimeHost.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using test::CallCounter;
using test::RealTimeHost;

/// The room is made before the render thread has to wait: were it made while the messages are appended, it
/// would grow with each of them.
TEST(SentMessages, FindRoomThatWasMadeAtOnce) {
    RealTimeHost host;
    const auto allocationsOfSending = [&] {
        const auto bankAndProgram = test::programChange(test::channel(0), 1, test::byte(2));
        const CallCounter::Scope scope;
        host.unit->processor->send(bankAndProgram);
        return scope.counts().allocations;
    };
    const auto withoutRoom = allocationsOfSending();
    ASSERT_EQ(host.render(), noErr);
    EXPECT_EQ(allocationsOfSending(), withoutRoom - 1);
}

}  // namespace
}  // namespace quillo
