// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/HangWatch.hpp"

#include <gtest/gtest.h>

#include <unistd.h>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/SignalDescriptor.hpp"

namespace quillo {
namespace {

[[noreturn]] void hang() {
    for (;;) {
        ::pause();
    }
}

TEST(HangWatchDeathTest, ASignalEndsTheProgramThatHangs) {
    const auto hangBeforeTheSignal = [] {
        const SignalDescriptor signals{SIGTERM, SIGHUP};
        const HangWatch watch({SIGTERM}, exitSuccess);
        ::kill(::getpid(), SIGHUP);
        ::kill(::getpid(), SIGTERM);
        hang();
    };
    EXPECT_EXIT(hangBeforeTheSignal(), testing::ExitedWithCode(exitSuccess), "");
}

TEST(HangWatchDeathTest, ASignalFromBeforeTheCallCountsToo) {
    const auto hangBehindTheSignal = [] {
        const SignalDescriptor signals{SIGTERM};
        ::kill(::getpid(), SIGTERM);
        const HangWatch watch({SIGTERM}, exitCannotCreate);
        hang();
    };
    EXPECT_EXIT(hangBehindTheSignal(), testing::ExitedWithCode(exitCannotCreate), "");
}

TEST(HangWatch, ACallThatReturnsLeavesTheSignalToBeRead) {
    const SignalDescriptor signals{SIGTERM};
    {
        const HangWatch watch({SIGTERM}, exitSuccess);
        ::kill(::getpid(), SIGTERM);
    }
    EXPECT_EQ(signals.take(), SIGTERM);
}

}  // namespace
}  // namespace quillo
