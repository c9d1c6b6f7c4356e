// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <jack/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/jack/PortDescription.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "hosts/jack/ServerNews.hpp"

namespace quillo {

/// Why there is no connection to a server, in words for a musician.
class ServerFailure : public std::runtime_error {
public:
    ServerFailure(const std::string& text, bool noServer) : std::runtime_error(text), noServer_(noServer) {}

    /// Whether no server runs, as against one that refuses.
    [[nodiscard]] bool noServer() const { return noServer_; }

private:
    bool noServer_;
};

/// The program as a client of a JACK server: one MIDI port each way, the input named "in", the output
/// "MIDIQuillo". This is the one place that calls the server's library. [main]
class JackClient {
public:
    struct Request {
        std::optional<std::string>
            server;        ///< its name; without one that of JACK_DEFAULT_SERVER, or "default"
        std::string name;  ///< of the client; the server makes it unique
        bool startServer = false;
    };

    static constexpr const char* inputName = "in";
    static constexpr const char* outputName = "MIDIQuillo";

    /// The name under which the user knows the server of a request.
    [[nodiscard]] static std::string serverName(const Request& request);

    /// Why a server gave no client, when the library said so and in these words.
    [[nodiscard]] static ServerFailure failureToOpen(const Request& request, jack_status_t status,
                                                     std::string_view words);

    /// Whether a transport in this state is about to roll, here or on every server of a network.
    [[nodiscard]] static bool isStarting(jack_transport_state_t state) QUILLO_REALTIME {
        return state == JackTransportStarting || state == JackTransportNetStarting;
    }

    /// A client with its ports, not yet active. Throws a `ServerFailure`. `cycle` and `news` must outlive it;
    /// it holds the cycle until `ProcessCycle::release`.
    JackClient(const Request& request, ProcessCycle& cycle, ServerNews& news);
    /// Takes the ports away. Also for a server that has gone.
    ~JackClient();
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    /// Lets cycles run. Throws a `ServerFailure`.
    void activate();

    /// The name that the server gave.
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::uint32_t sampleRate() const;
    /// The length of a cycle in frames.
    [[nodiscard]] std::uint32_t bufferSize() const;

    /// Every MIDI port of the server.
    [[nodiscard]] std::vector<PortDescription> ports() const;
    /// The MIDI port of this number; nothing for one that is gone or carries no MIDI.
    [[nodiscard]] std::optional<PortDescription> port(std::uint32_t number) const;

    /// Whether there is a port of this full name.
    [[nodiscard]] bool hasPort(const std::string& name) const;

    /// What came of connecting a port. A client that has ports and is not active yet refuses.
    enum class Connecting : std::uint8_t { done, wasDone, refused };

    /// Connects the port to our input if it gives MIDI, to our output if it takes MIDI.
    Connecting connect(const PortDescription& port);
    /// Takes that connection down. True if it was there.
    bool disconnect(const PortDescription& port);

    /// The names of the ports that ours are connected to.
    struct Connections {
        std::vector<std::string> sources;
        std::vector<std::string> targets;
    };
    [[nodiscard]] Connections connections() const;

    /// Gives the client and its ports their names and icons for people. Servers that keep no such things are
    /// content without.
    void describe();

private:
    struct Close {
        void operator()(jack_client_t* client) const;
    };

    [[nodiscard]] jack_port_t* makePort(const char* name, unsigned long flags);
    void setCallbacks();
    void setProperty(jack_uuid_t subject, const char* key, const std::string& value, const char* type);
    [[nodiscard]] jack_uuid_t uuid() const;
    [[nodiscard]] PortDescription describe(jack_port_t* port) const;

    static int process(jack_nframes_t frames, void* self);
    void runCycle(jack_nframes_t frames) QUILLO_REALTIME;

    ProcessCycle& cycle_;
    ServerNews& news_;
    std::unique_ptr<jack_client_t, Close> client_;
    jack_port_t* in_ = nullptr;
    jack_port_t* out_ = nullptr;
    std::vector<jack_uuid_t> described_;
};

}  // namespace quillo
