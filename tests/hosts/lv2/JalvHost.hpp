// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <jack/jack.h>
#include <sys/types.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "hosts/formats/FormatScript.hpp"

namespace quillo::test {

/// A program that runs until this ends: then it is asked to end. It ends with the test, too, if that crashes.
class RunningProgram {
public:
    /// Its standard input stays open; these variables are added to the environment. Throws when there is no
    /// such program.
    RunningProgram(const std::vector<std::string>& words,
                   const std::map<std::string, std::string>& environment);
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    [[nodiscard]] bool hasEnded();

    /// Closes its standard input, and waits until it has ended of itself.
    void endInput();

private:
    pid_t process_ = -1;
    int input_ = -1;
};

/// The plug-in in jalv, under a JACK server of the test's own without hardware, and a client that sends into
/// it and hears what comes back. All waiting is for what is waited for; the test's time limit is the only
/// one.
class JalvHost {
public:
    static constexpr std::uint32_t period = 1024;

    /// Restores the state in this folder. Throws when a server cannot run here.
    JalvHost(const std::string& pluginPath, const std::string& uri, const std::string& stateFolder);
    ~JalvHost();
    JalvHost(const JalvHost&) = delete;
    JalvHost& operator=(const JalvHost&) = delete;

    /// Sends the messages, their times counted from a cycle to come, and returns what has come back by
    /// `length` frames from there, in the same count. Where the server could not keep its own times it is
    /// done again.
    std::vector<ScriptMessage> play(const std::vector<ScriptMessage>& messages, SampleTime length);

private:
    struct Close {
        void operator()(jack_client_t* client) const { ::jack_client_close(client); }
    };

    void openClient();
    void connect(const std::string& from, const std::string& to);
    void waitUntilItPasses();
    void letOneCyclePass();
    void process(jack_nframes_t frames);
    std::vector<ScriptMessage> playOnce(const std::vector<ScriptMessage>& messages, SampleTime length);

    std::string server_;
    std::unique_ptr<RunningProgram> jackd_;
    std::unique_ptr<RunningProgram> jalv_;

    std::mutex mutex_;
    std::condition_variable cyclePassed_;
    SampleTime now_ = 0;  ///< the end of the cycle that was played last
    bool probing_ = false;
    std::uint64_t xruns_ = 0;
    std::deque<ScriptMessage> toSend_;
    std::vector<ScriptMessage> arrived_;

    std::unique_ptr<jack_client_t, Close> client_;
    jack_port_t* in_ = nullptr;
    jack_port_t* out_ = nullptr;
};

}  // namespace quillo::test
