// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "support/Threads.hpp"

namespace quillo::test {

/// What a program writes to one of its streams, read as it comes.
class ProgramOutput {
public:
    explicit ProgramOutput(int descriptor) : reader_([this, descriptor] { readAll(descriptor); }) {}

    /// Waits until `text` has been written behind everything that was waited for before. Throws
    /// `std::runtime_error` with what there is when the stream ends without it.
    void waitFor(const std::string& text) {
        std::unique_lock lock(mutex_);
        std::size_t found = std::string::npos;
        changed_.wait(lock, [&] { return (found = text_.find(text, seen_)) != std::string::npos || ended_; });
        if (found == std::string::npos) {
            throw std::runtime_error("\"" + text + "\" was never written; what was:\n" + text_);
        }
        seen_ = found + text.size();
    }

    /// Everything, when the program has closed the stream.
    std::string whole() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return ended_; });
        return text_;
    }

    /// Everything so far.
    std::string soFar() {
        const std::lock_guard lock(mutex_);
        return text_;
    }

private:
    void readAll(int descriptor) {
        std::array<char, 4096> chunk{};
        ssize_t count = 0;
        while ((count = ::read(descriptor, chunk.data(), chunk.size())) > 0 ||
               (count < 0 && errno == EINTR)) {
            const std::lock_guard lock(mutex_);
            text_.append(chunk.data(), static_cast<std::size_t>(count < 0 ? 0 : count));
            changed_.notify_all();
        }
        ::close(descriptor);
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string text_;
    std::size_t seen_ = 0;
    bool ended_ = false;
    JoinedThread reader_;
};

/// A program that a test runs. It ends with the test, whatever becomes of that, and so do programs that it
/// has started itself.
class ChildProcess {
public:
    /// `environment` is added to the test's own; an empty value takes the variable away.
    explicit ChildProcess(const std::vector<std::string>& words,
                          const std::map<std::string, std::string>& environment = {}) {
        std::array<int, 2> outPipe{};
        std::array<int, 2> errPipe{};
        if (::pipe2(outPipe.data(), O_CLOEXEC) != 0 || ::pipe2(errPipe.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "no pipe");
        }
        process_ = ::fork();
        if (process_ == 0) {
            become(words, environment, outPipe[1], errPipe[1]);
        }
        group_ = process_;
        ::setpgid(process_, group_);
        ::close(outPipe[1]);
        ::close(errPipe[1]);
        out_ = std::make_unique<ProgramOutput>(outPipe[0]);
        err_ = std::make_unique<ProgramOutput>(errPipe[0]);
        descriptor_ = static_cast<int>(::syscall(SYS_pidfd_open, process_, 0));
    }

    ~ChildProcess() {
        ::kill(-group_, SIGKILL);
        if (process_ > 0) {
            wait();
        }
        ::close(descriptor_);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] ProgramOutput& out() { return *out_; }
    [[nodiscard]] ProgramOutput& err() { return *err_; }
    [[nodiscard]] pid_t id() const { return process_; }

    void signal(int number) const { ::kill(process_, number); }

    /// Whether the program ends within so many milliseconds.
    [[nodiscard]] bool endsWithin(int milliseconds) const {
        pollfd watched{descriptor_, POLLIN, 0};
        return ::poll(&watched, 1, milliseconds) == 1;
    }

    /// Waits for the program's end: its exit status, or 128 and the signal that ended it.
    int wait() {
        int status = 0;
        while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    [[noreturn]] static void become(const std::vector<std::string>& words,
                                    const std::map<std::string, std::string>& environment, int out, int err) {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        for (const auto& [name, value] : environment) {
            value.empty() ? ::unsetenv(name.c_str()) : ::setenv(name.c_str(), value.c_str(), 1);
        }
        std::vector<char*> pointers;
        for (const auto& word : words) {
            pointers.push_back(const_cast<char*>(word.c_str()));
        }
        pointers.push_back(nullptr);
        ::execvp(pointers.front(), pointers.data());
        constexpr int cannotRun = 127;
        ::_exit(cannotRun);
    }

    pid_t process_ = -1;  ///< -1 when it has been waited for
    pid_t group_ = -1;    ///< it and those that it starts
    int descriptor_ = -1;
    std::unique_ptr<ProgramOutput> out_;
    std::unique_ptr<ProgramOutput> err_;
};

}  // namespace quillo::test
