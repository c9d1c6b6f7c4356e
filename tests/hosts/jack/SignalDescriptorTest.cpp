// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SignalDescriptor.hpp"

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <new>
#include <system_error>

#include "hosts/jack/SignalSet.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

bool isBlocked(int signal) {
    sigset_t mask;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    return sigismember(&mask, signal) == 1;
}

TEST(SignalDescriptor, ASignalIsReadInsteadOfEndingTheProgram) {
    const SignalDescriptor signals{SIGTERM, SIGHUP};
    EXPECT_EQ(signals.take(), std::nullopt);
    ::kill(::getpid(), SIGHUP);
    EXPECT_EQ(signals.take(), SIGHUP);
    EXPECT_EQ(signals.take(), std::nullopt);
    ::kill(::getpid(), SIGTERM);
    EXPECT_EQ(signals.take(), SIGTERM);
}

TEST(SignalDescriptor, AThreadThatIsStartedLaterLeavesTheSignalsAlone) {
    const SignalDescriptor signals{SIGHUP};
    bool blocked = false;
    JoinedThread([&] { blocked = isBlocked(SIGHUP); }).join();
    EXPECT_TRUE(blocked);
}

TEST(SignalDescriptor, ReleasedSignalsDoWhatTheyDidBefore) {
    SignalDescriptor signals{SIGHUP};
    EXPECT_TRUE(isBlocked(SIGHUP));
    signals.release();
    EXPECT_FALSE(isBlocked(SIGHUP));
}

TEST(SignalDescriptor, AHandlerThatALibraryHasPutInMeanwhileIsNoLongerCalled) {
    for (const auto before : {SIG_DFL, SIG_IGN}) {
        std::signal(SIGHUP, before);
        SignalDescriptor signals{SIGHUP};
        std::signal(SIGHUP, [](int) {});
        signals.release();
        EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), before);
    }
}

#ifndef __SANITIZE_ADDRESS__  // The sanitizers need descriptors themselves, to look at the exception.
TEST(SignalDescriptor, WhereNoDescriptorIsLeftTheSignalsDoWhatTheyDid) {
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_THROW(SignalDescriptor{SIGHUP}, std::system_error);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(isBlocked(SIGHUP));
}
#endif

/// Whatever was in its place before.
TEST(SignalDescriptor, ASetHoldsTheSignalsThatItWasMadeOfAndNoOther) {
    alignas(sigset_t) std::array<unsigned char, sizeof(sigset_t)> memory;
    memory.fill(0xFF);
    const auto* set = new (memory.data()) sigset_t(signalSet({SIGTERM, SIGHUP}));
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        EXPECT_EQ(sigismember(set, signal), signal == SIGTERM || signal == SIGHUP) << signal;
    }
}

TEST(SignalDescriptor, AProgramThatIsStartedFromHereInheritsNothing) {
    const SignalDescriptor signals{SIGTERM};
    const auto child = ::fork();
    if (child == 0) {
        ::_exit(isBlocked(SIGTERM) ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

}  // namespace
}  // namespace quillo
