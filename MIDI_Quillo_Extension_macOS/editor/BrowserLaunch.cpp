// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/BrowserLaunch.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace quillo {

namespace {

constexpr int answerNumber = 3;

/// The shell ends at once and leaves its work to a process of nobody's. No opener holds the answer's end
/// open.
constexpr const char* script = R"(
{
    exec </dev/null >/dev/null 2>&1
    xdg-open "$1" 3>&- || x-www-browser "$1" 3>&-
    echo $? >&3
} &
)";

/// What a program of the user's own begins with: no signal blocked or ignored, whatever the host does.
class FreshSignals {
public:
    FreshSignals() {
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_init(&attributes_);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~FreshSignals() { ::posix_spawnattr_destroy(&attributes_); }
    FreshSignals(const FreshSignals&) = delete;
    FreshSignals& operator=(const FreshSignals&) = delete;

    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// Runs the script with one argument and waits until the shell has ended. False when there is no shell.
bool runScript(const std::string& argument, int answer) {
    const std::array<std::string, 5> words{"sh", "-c", script, "sh", argument};
    std::array<char*, 6> pointers{};
    for (std::size_t index = 0; index < words.size(); ++index) {
        pointers[index] = const_cast<char*>(words[index].c_str());
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, answer, answerNumber);
    const FreshSignals signals;
    pid_t shell = 0;
    const int error = ::posix_spawn(&shell, "/bin/sh", &actions, signals.get(), pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    while (error == 0 && ::waitpid(shell, nullptr, 0) < 0 && errno == EINTR) {
    }
    return error == 0;
}

}  // namespace

BrowserLaunch::BrowserLaunch(const std::string& address) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        state_ = State::failed;
        return;
    }
    answer_ = Descriptor(ends[0]);
    const Descriptor written(ends[1]);
    if (!runScript(address, written.number())) {
        state_ = State::failed;
    }
}

BrowserLaunch::State BrowserLaunch::state() {
    char first = 0;
    if (state_ == State::opening) {
        const auto count = ::read(answer_.number(), &first, 1);
        if (count >= 0) {
            state_ = count == 1 && first == '0' ? State::opened : State::failed;
        }
    }
    return state_;
}

}  // namespace quillo
