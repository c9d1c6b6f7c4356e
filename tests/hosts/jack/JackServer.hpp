// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <jack/jack.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "hosts/jack/LibraryMessages.hpp"
#include "platform/Descriptor.hpp"
#include "support/ChildProcess.hpp"

namespace quillo::test {

/// A JACK server of the test's own, without hardware. It waits in every cycle four seconds for all its
/// clients, so that none misses one because the machine is slow. One at a time.
class JackServer {
public:
    struct Settings {
        std::uint32_t sampleRate = 48000;
        std::uint32_t bufferSize = 256;
        std::uint32_t mostPorts = 2048;  ///< five are the server's own
    };

    JackServer() : JackServer(Settings{}) {}
    explicit JackServer(Settings settings) { start(settings); }
    ~JackServer() { end(hangs_ ? SIGKILL : SIGTERM); }
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    /// Runs when this returns, and no longer than the test. Throws `std::runtime_error` when a server cannot
    /// run on this machine.
    void start(Settings settings) {
        forget("jack_db-" + std::to_string(::getuid()));
        process_.emplace(std::vector<std::string>{
            "setpriv", "--pdeathsig", "KILL", "jackd", "-r", "-S", "-t", patience, "-p",
            std::to_string(settings.mostPorts), "-n", name(), "-d", "dummy", "-r",
            std::to_string(settings.sampleRate), "-p", std::to_string(settings.bufferSize)});
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

    [[nodiscard]] const std::string& name() const { return name_; }

    /// A server's name that no other test of this user has from now on until this program ends, whatever
    /// TMPDIR says. It is used again and again: a machine remembers servers that were killed, eight at most,
    /// until one of the same name ends well.
    [[nodiscard]] static std::string takeName() {
        waitForTurn();
        return commonName;
    }

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
    static constexpr const char* commonName = "quillo-test";
    static constexpr int shortWhile = 10;  ///< between two looks, in milliseconds

    /// In milliseconds; in a cycle the server waits ten times as long for its clients. Once in some thousand
    /// times it waits in vain, for a client that has left at the beginning of the cycle: that must be over
    /// before the program that is tested takes the silence for the server's end.
    static constexpr const char* patience = "400";

    /// A JACK server of this machine. One that has ended, and that its parent has not reaped, has no
    /// arguments any more, but still its number, and in the library's list its name.
    struct Found {
        pid_t process = 0;
        std::string arguments;
    };

    static bool runs(const Found& server) { return !server.arguments.empty(); }

    static std::vector<Found> allServers() {
        std::vector<Found> found;
        std::error_code failure;
        for (const auto& process : std::filesystem::directory_iterator("/proc", failure)) {
            std::string name;
            std::string arguments;
            std::getline(std::ifstream(process.path() / "comm"), name);
            std::getline(std::ifstream(process.path() / "cmdline"), arguments);
            if (name == "jackd" || name == "jackdbus") {
                found.push_back({std::stoi(process.path().filename()), arguments});
            }
        }
        return found;
    }

    /// Programs that have servers run one after the other, of whatever tree they are: where clients of two
    /// servers make the library's store at one moment, one of them cannot be opened. A program that was
    /// killed may have left its server, or the name of one.
    static void waitForTurn() {
        static const Descriptor turn = [] {
            const auto path = "/dev/shm/quillo-test-servers." + std::to_string(::getuid()) + ".lock";
            Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
            ::flock(file.number(), LOCK_EX);
            for (const auto& [process, arguments] : allServers()) {
                if (arguments.find(commonName) != std::string::npos && sharesOurLock(process)) {
                    endOther(process);
                }
            }
            if (!std::ranges::all_of(allServers(), &runs)) {
                forget("jack-shm-registry");
            }
            return file;
        }();
    }

    /// What clients tell of themselves is kept by the library in a store that outlives servers and clients,
    /// and so does a lock in it whose owner was killed: then no client can be opened any more. Where no
    /// server runs nobody needs the store, nor the list of servers.
    static void forget(const std::string& file) {
        if (std::ranges::none_of(allServers(), &runs)) {
            std::error_code failure;
            std::filesystem::remove_all("/dev/shm/" + file, failure);
        }
    }

    /// Whether a server is of this user and of this system, not of one in a folder of it: others have locks
    /// of their own.
    static bool sharesOurLock(pid_t process) {
        const auto folder = "/proc/" + std::to_string(process);
        struct ::stat status = {};
        std::error_code failure;
        return ::stat(folder.c_str(), &status) == 0 && status.st_uid == ::getuid() &&
               std::filesystem::equivalent(folder + "/root/dev/shm", "/dev/shm", failure);
    }

    static void endOther(pid_t process) {
        const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
        if (handle.isOpen() && ::kill(process, SIGKILL) == 0) {
            pollfd end{handle.number(), POLLIN, 0};
            ::poll(&end, 1, -1);
        }
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

    const std::string name_ = takeName();
    std::optional<ChildProcess> process_;
    bool hangs_ = false;
};

}  // namespace quillo::test
