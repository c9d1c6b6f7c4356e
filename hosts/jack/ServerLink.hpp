// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "hosts/jack/ConnectionKeeper.hpp"
#include "hosts/jack/JackClient.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "hosts/jack/ServerNews.hpp"
#include "hosts/jack/ServerStatus.hpp"
#include "hosts/jack/UserMessages.hpp"
#include "session/Session.hpp"

namespace quillo {

/// A session's link to a JACK server that may end and come back: the client while there is one, what the
/// server tells, and the connections that shall hold. The user is told of each turn. [main]
class ServerLink {
public:
    ServerLink(Session& session, UserMessages& messages, JackClient::Request request,
               ConnectionKeeper connections);
    /// Leaves the server.
    ~ServerLink();
    ServerLink(const ServerLink&) = delete;
    ServerLink& operator=(const ServerLink&) = delete;

    /// Makes the link and lets the rules run, with its connections made before its first cycle. Only the
    /// first time a server is started. Throws a `ServerFailure`.
    void connect();
    void disconnect();
    /// The same while the program goes on, which a server that hangs must not keep for ever.
    void leave();

    /// While there is no link: those to come have this name, and these connections come back with their
    /// ports. Whatever was remembered before is forgotten.
    void become(const std::string& clientName, const JackClient::Connections& connections);

    /// The connections as they shall be when the program starts again: those that there are, and those whose
    /// ports are missing.
    [[nodiscard]] JackClient::Connections connections();

    /// Nothing more goes in, and the notes that sound end, before the link is given up: returns when their
    /// ends have been heard. A server that runs no cycles is waited for a second.
    void endNotes();

    /// Before the first connection: a message that begins with these bytes is a panic.
    void setPanicMessage(std::span<const std::uint8_t> bytes) { cycle_.setPanicMessage(bytes); }

    /// The user shall know that, and why, the program waits for a server, for as long as it does.
    void waitForServer(const std::string& reason);

    /// Whether there shall be a link: not before `connect`, and not behind `leave`.
    [[nodiscard]] bool isWanted() const { return isWanted_; }
    [[nodiscard]] bool isConnected() const { return client_ != nullptr; }
    /// The client's name if there is one.
    [[nodiscard]] std::string clientName() const { return client_ ? client_->name() : ""; }

    /// The server with its ports and our connections as they are now; nothing without a server.
    [[nodiscard]] std::optional<ServerStatus> status() const;

    /// Connects a port, or takes its connection down, as the user wishes; without a server nothing happens.
    void setConnected(const PortDescription& port, bool connected);

    /// Can be read when `takeNews` has something to do.
    [[nodiscard]] int descriptor() const { return news_.descriptor(); }
    void takeNews();

    /// To be called `EventLoop::ticksPerSecond` times a second: looks once a second whether a server that
    /// went is back, or one that was there has fallen silent, tells of messages that were refused or lost,
    /// notes the connections, and looks again at ports that have appeared a moment ago.
    void tick();

    /// `run` runs the calls that a server which hangs would keep for ever.
    using Call = std::function<void()>;
    void setRunCall(std::function<void(const Call&)> run) { runCall_ = std::move(run); }

    /// `callback` runs when the link was made or lost, and when what `status` says may be something else.
    void setOnChange(std::function<void()> callback) { onChange_ = std::move(callback); }

private:
    void makeClient();
    void tellOfClient();
    void takeSampleRate();
    /// True when nothing is left to do for the port: it was wanted, or can never be connected.
    bool connectIfWanted(std::uint32_t number);
    /// Whether a port that has appeared is to be connected.
    [[nodiscard]] bool takes(const PortDescription& port);
    void makeConnection(const PortDescription& port);
    void forgetConnection(const std::string& port);
    void lookAgainAtNewPorts();
    void formatHasChanged();
    void serverIsGone();
    void leaveServer();
    void listenForCycles();
    void tryToReturn();
    void tellOfLosses();
    [[nodiscard]] JackClient::Connections connectionsNow();
    [[nodiscard]] bool wasConnected(const PortDescription& port) const;

    Session& session_;
    UserMessages& messages_;
    JackClient::Request request_;
    ConnectionKeeper connections_;
    std::function<void(const Call&)> runCall_ = [](const Call& call) { call(); };
    std::function<void()> onChange_ = [] {};
    ServerNews news_;
    ProcessCycle cycle_;
    std::unique_ptr<JackClient> client_;   ///< null while there is no server
    std::unique_ptr<JackClient> gone_;     ///< of a server that went, until it is left
    bool returns_ = false;                 ///< whether there was a link before
    bool isWanted_ = false;                ///< whether there shall be a link
    std::string alert_;                    ///< why the program waits
    std::string reportedFailure_;          ///< why a server does not take us back, as far as the user knows
    std::vector<std::uint32_t> unwanted_;  ///< ports that have appeared since the last look, once a second
    std::vector<std::uint32_t> unwantedBefore_;  ///< in the second before
    JackClient::Connections seen_;   ///< the connections at the last look, and what was connected since
    JackClient::Connections noted_;  ///< those of a second ago, and what was connected since
    std::uint64_t heardCycles_ = 0;  ///< how many had run at the last look, once a second
    bool hasHeardCycles_ = false;    ///< since the link was made
    int silentSeconds_ = 0;
    std::uint64_t ticks_ = 0;
    std::uint64_t toldRefused_ = 0;
    std::uint64_t toldTooLong_ = 0;
    std::uint64_t toldLost_ = 0;
    bool toldLostOutputs_ = false;
};

}  // namespace quillo
