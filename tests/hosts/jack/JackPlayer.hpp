// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "hosts/formats/FormatScript.hpp"

namespace quillo::test {

/// Two clients of a server, one before and one behind the program that is tested: the server runs them in
/// that order in every cycle, so what the program passes on arrives in the cycle in which it was sent. Times
/// are frames that the sender has seen.
class JackPlayer {
public:
    /// Throws `std::runtime_error` when the server does not take them.
    explicit JackPlayer(const std::string& server);
    ~JackPlayer();
    JackPlayer(const JackPlayer&) = delete;
    JackPlayer& operator=(const JackPlayer&) = delete;

    /// Connects the program's ports, unless it has remembered them, and waits for the connection.
    void connectTo(const std::string& client);

    /// Waits until a message goes all the way, whoever connected the ports.
    void waitForConnection();

    /// Sends the messages, their times counted from a cycle to come.
    void send(const std::vector<ScriptMessage>& messages);

    /// Sends the messages, their times counted from a cycle to come, and waits until `length` frames from
    /// there have passed. Meanwhile the server runs as fast as it can and leaves out no cycle, unless a
    /// client keeps it for longer than its patience. Returns what arrived, in the same count.
    std::vector<ScriptMessage> play(const std::vector<ScriptMessage>& messages, SampleTime length);
    /// The same at the speed that the server has.
    std::vector<ScriptMessage> playNow(const std::vector<ScriptMessage>& messages, SampleTime length);

    /// What has arrived since it was last forgotten. `play` and the waits for a connection begin by
    /// forgetting.
    std::vector<Bytes> arrived();
    void forget();
    /// Waits until exactly this has arrived.
    void waitFor(const Bytes& message);

    /// Waits until so many cycles have passed.
    void letPass(int cycles);

    [[nodiscard]] jack_client_t* client() const { return sender_.get(); }
    [[nodiscard]] std::string outputName() const { return ::jack_port_name(out_); }
    [[nodiscard]] std::string inputName() const { return ::jack_port_name(in_); }
    [[nodiscard]] std::uint64_t xruns() const { return xruns_; }

    /// Lets the server run as fast as it can. When this ends the server puts back the connections of its
    /// beginning, also with ports that are gone; it should end while everybody is still there.
    void setFreewheel(bool on) { ::jack_set_freewheel(sender_.get(), on ? 1 : 0); }

private:
    struct Close {
        void operator()(jack_client_t* client) const { ::jack_client_close(client); }
    };
    using Client = std::unique_ptr<jack_client_t, Close>;

    static Client open(const std::string& server, const char* name);
    static int speak(jack_nframes_t frames, void* self);
    static int listen(jack_nframes_t frames, void* self);
    /// [under the mutex] Returns the time from which the messages' times are counted.
    SampleTime schedule(const std::vector<ScriptMessage>& messages);
    void speakCycle(jack_nframes_t frames);
    void listenCycle(jack_nframes_t frames);
    void require(const std::string& source, const std::string& target);

    std::mutex mutex_;
    std::condition_variable cyclePassed_;
    SampleTime now_ = 0;        ///< the start of the cycle that is under way
    SampleTime end_ = 0;        ///< of that cycle
    std::uint64_t cycles_ = 0;  ///< that the listener has heard
    bool probing_ = false;      ///< whether a probe is sent in every cycle
    std::deque<ScriptMessage> toSend_;
    std::vector<ScriptMessage> arrived_;
    std::atomic<std::uint64_t> xruns_{0};

    Client sender_;
    Client listener_;
    jack_port_t* out_ = nullptr;
    jack_port_t* in_ = nullptr;
};

}  // namespace quillo::test
