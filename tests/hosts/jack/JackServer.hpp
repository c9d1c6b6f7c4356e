// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <jack/jack.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "hosts/jack/LibraryMessages.hpp"
#include "hosts/jack/SessionLock.hpp"
#include "platform/Descriptor.hpp"
#include "support/ChildProcess.hpp"

namespace quillo::test {

/// A server's name that no other test of this machine has while this lives, whatever TMPDIR says. The names
/// are few and used again and again: a machine remembers servers that were killed, eight at most, until one
/// of the same name ends well.
class ServerName {
public:
    ServerName() {
        for (int number = 0; !lock_; ++number) {
            text_ = "quillo-test-" + std::to_string(number);
            lock_ = SessionLock::tryTake("/dev/shm/" + text_ + "." + std::to_string(::getuid()) + ".lock");
        }
    }

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
    std::optional<SessionLock> lock_;
};

/// A JACK server of the test's own, without hardware. It waits in every cycle for all its clients, so that
/// none misses one however slow the machine is.
class JackServer {
public:
    struct Settings {
        std::uint32_t sampleRate = 48000;
        std::uint32_t bufferSize = 256;
    };

    JackServer() : JackServer(Settings{}) {}
    explicit JackServer(Settings settings) { start(settings); }
    ~JackServer() { end(hangs_ ? SIGKILL : SIGTERM); }
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    /// Runs when this returns, and no longer than the test. Throws `std::runtime_error` when a server cannot
    /// run on this machine.
    void start(Settings settings) {
        waitForTurn();
        forgetProperties();
        process_.emplace(std::vector<std::string>{
            "setpriv", "--pdeathsig", "KILL", "jackd", "-r", "-S", "-t", patience, "-n", name(), "-d",
            "dummy", "-r", std::to_string(settings.sampleRate), "-p", std::to_string(settings.bufferSize)});
        LibraryMessages::silenceLibrary();
        while (!answers()) {
            if (process_->endsWithin(shortWhile)) {
                const auto out = process_->out().whole() + process_->err().whole();
                throw std::runtime_error(
                    "A JACK server cannot run here, and these tests need one. Is the package "
                    "jackd2 installed, and /dev/shm writable? It said:\n" +
                    out);
            }
        }
    }

    [[nodiscard]] const std::string& name() const { return name_.text(); }

    /// Ends it as its user would.
    void stop() { end(SIGTERM); }

    /// Ends it as a crash would.
    void kill() { end(SIGKILL); }

    /// From now on it neither runs cycles nor answers, until it is killed.
    void hang() {
        process_->signal(SIGSTOP);
        hangs_ = true;
    }

private:
    static constexpr int shortWhile = 10;             ///< between two looks, in milliseconds
    static constexpr const char* patience = "10000";  ///< with a client, in milliseconds

    /// Programs that have servers run one after the other, of whatever tree they are: where clients of two
    /// servers make the library's store at one moment, one of them cannot be opened.
    static void waitForTurn() {
        static const Descriptor turn = [] {
            const auto path = "/dev/shm/quillo-test-servers." + std::to_string(::getuid()) + ".lock";
            Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
            ::flock(file.number(), LOCK_EX);
            return file;
        }();
    }

    /// What clients tell of themselves is kept by the library in a store that outlives servers and clients,
    /// and so does a lock in it whose owner was killed: then no client can be opened any more. Where no
    /// server runs nobody needs the store.
    static void forgetProperties() {
        if (!aServerRuns()) {
            std::error_code failure;
            std::filesystem::remove_all("/dev/shm/jack_db-" + std::to_string(::getuid()), failure);
        }
    }

    /// One that has ended, and that nobody has asked about, has a name still, but no command.
    static bool aServerRuns() {
        std::error_code failure;
        for (const auto& process : std::filesystem::directory_iterator("/proc", failure)) {
            std::string command;
            std::getline(std::ifstream(process.path() / "cmdline"), command, '\0');
            const auto name = std::filesystem::path(command).filename();
            if (name == "jackd" || name == "jackdbus") {
                return true;
            }
        }
        return false;
    }

    void end(int signal) {
        if (process_) {
            process_->signal(signal);
            process_->wait();
            process_.reset();
        }
    }

    [[nodiscard]] bool answers() const {
        auto* client =
            ::jack_client_open("probe", static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                               nullptr, name().c_str());
        if (client != nullptr) {
            ::jack_client_close(client);
        }
        return client != nullptr;
    }

    ServerName name_;
    std::optional<ChildProcess> process_;
    bool hangs_ = false;
};

}  // namespace quillo::test
