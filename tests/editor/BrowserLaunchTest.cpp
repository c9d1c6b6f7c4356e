// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/BrowserLaunch.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

using State = BrowserLaunch::State;

/// A desktop whose openers are scripts of the test's.
class BrowserLaunchTest : public testing::Test {
protected:
    BrowserLaunchTest() { ::setenv("PATH", folder.path().c_str(), 1); }
    ~BrowserLaunchTest() override { ::setenv("PATH", pathBefore.c_str(), 1); }

    void add(const char* opener, const std::string& commands) const {
        std::ofstream(folder / opener) << "#!/bin/sh\n" << commands << '\n';
        ::chmod((folder / opener).c_str(), 0700);
    }

    std::string fileCalled(const char* name) const {
        std::ifstream file(folder / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static State outcome(BrowserLaunch& launch) {
        while (launch.state() == State::opening) {
            std::this_thread::yield();
        }
        return launch.state();
    }

    static State outcome(const std::string& address) {
        BrowserLaunch launch(address);
        return outcome(launch);
    }

    const TemporaryFolder folder;
    const std::string pathBefore = std::getenv("PATH");
};

TEST_F(BrowserLaunchTest, HandsTheAddressOverAsItIs) {
    add("xdg-open", "echo \"$#:$1\" >" + (folder / "heard").string());
    EXPECT_EQ(outcome("file:///a b/$(touch x);'\"&.html"), State::opened);
    EXPECT_EQ(fileCalled("heard"), "1:file:///a b/$(touch x);'\"&.html\n");
}

TEST_F(BrowserLaunchTest, TakesTheOtherOpenerWhereTheFirstFails) {
    add("xdg-open", "exit 3");
    add("x-www-browser", "echo \"$1\" >" + (folder / "heard").string());
    EXPECT_EQ(outcome("page"), State::opened);
    EXPECT_EQ(fileCalled("heard"), "page\n");
}

TEST_F(BrowserLaunchTest, SaysWhenThereIsNoBrowser) {
    EXPECT_EQ(outcome("page"), State::failed);
    add("xdg-open", "exit 3");
    EXPECT_EQ(outcome("page"), State::failed);
}

TEST_F(BrowserLaunchTest, LeavesNoProcessToWaitFor) {
    add("xdg-open", "exit 0");
    EXPECT_EQ(outcome("page"), State::opened);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(BrowserLaunchTest, WaitsForNoBrowserThatStays) {
    const auto pipe = (folder / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    add("xdg-open", "read line <" + pipe);
    BrowserLaunch launch("page");
    EXPECT_EQ(launch.state(), State::opening);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    std::ofstream(pipe) << "end\n";
    EXPECT_EQ(outcome(launch), State::opened);
}

TEST_F(BrowserLaunchTest, TheBrowserHearsSignalsThatTheHostIgnores) {
    add("xdg-open", "kill -PIPE $$\nexit 0");
    auto* const before = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(outcome("page"), State::failed);
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace quillo
