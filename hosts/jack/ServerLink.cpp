// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ServerLink.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <set>
#include <thread>
#include <utility>

#include "hosts/jack/EventLoop.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr auto gone =
    "The JACK server has ended, or dropped this program. The rules stay; MIDI goes on as soon as it is back.";

using Names = std::vector<std::string>;

bool contains(const Names& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
}

/// Each name once, in alphabetical order.
Names united(const Names& names, std::set<std::string> others) {
    others.insert(names.begin(), names.end());
    return {others.begin(), others.end()};
}

/// The names of `before` that are not among those of now, as far as they have this property.
template <class Property>
Names lost(const Names& before, const Names& now, Property has) {
    Names lost;
    std::ranges::copy_if(before, std::back_inserter(lost),
                         [&](const std::string& name) { return !contains(now, name) && has(name); });
    return lost;
}

std::uint64_t sinceLastTold(std::uint64_t& told, std::uint64_t count) {
    return count - std::exchange(told, count);
}

}  // namespace

ServerLink::ServerLink(Session& session, UserMessages& messages, JackClient::Request request,
                       ConnectionKeeper connections)
    : session_(session),
      messages_(messages),
      request_(std::move(request)),
      connections_(std::move(connections)),
      cycle_(session.renderer()) {}

ServerLink::~ServerLink() {
    disconnect();
}

void ServerLink::connect() {
    isWanted_ = true;
    runCall_([this] {
        try {
            makeClient();
        } catch (...) {
            client_.reset();
            request_.startServer = false;
            throw;
        }
    });
    request_.startServer = false;
    returns_ = true;
    messages_.takeBack(alert_);
    onChange_();
}

void ServerLink::makeClient() {
    session_.renderer().requests().ask(RenderRequests::Kind::endOfNotes);
    static_cast<void>(news_.take());
    heardCycles_ = cycle_.cycles();
    hasHeardCycles_ = false;
    silentSeconds_ = 0;
    client_ = std::make_unique<JackClient>(request_, cycle_, news_);
    takeSampleRate();
    client_->activate();
    client_->describe();
    tellOfClient();
    for (const auto& port : client_->ports()) {
        if (takes(port)) {
            makeConnection(port);
        }
    }
    cycle_.release();
}

void ServerLink::tellOfClient() {
    const auto name = client_->name();
    const auto taken = name == request_.name ? "" : " (" + inQuotes(request_.name) + " is taken)";
    messages_.say(std::string(returns_ ? "back on" : "on") + " the JACK server " +
                  inQuotes(JackClient::serverName(request_)) + " as " + inQuotes(name) + taken + ", " +
                  std::to_string(client_->sampleRate()) + " Hz, " +
                  countWords(client_->bufferSize(), "frame") + " a cycle");
}

void ServerLink::takeSampleRate() {
    if (const auto problem = session_.setSampleRate(client_->sampleRate())) {
        throw ServerFailure(*problem, false);
    }
}

/// A port that was connected when the connections were looked at has gone and come back since.
bool ServerLink::takes(const PortDescription& port) {
    return connections_.takes(port) || (!port.isOurs && wasConnected(port));
}

bool ServerLink::wasConnected(const PortDescription& port) const {
    return contains(port.givesMIDI ? seen_.sources : seen_.targets, port.name);
}

/// Notes it at once: a server shows a connection a cycle after it was made, and may end before. The port of a
/// client that is not active yet counts as missing: it appears again when its client is.
void ServerLink::makeConnection(const PortDescription& port) {
    for (auto* noted : {&seen_, &noted_}) {
        (port.givesMIDI ? noted->sources : noted->targets).push_back(port.name);
    }
    switch (client_->connect(port)) {
    case JackClient::Connecting::done:
        messages_.say((port.givesMIDI ? "hears " : "sends to ") + escaped(port.name));
        break;
    case JackClient::Connecting::wasDone: break;
    case JackClient::Connecting::refused:
        port.givesMIDI ? connections_.remember({port.name}, {}) : connections_.remember({}, {port.name});
    }
}

bool ServerLink::connectIfWanted(std::uint32_t number) {
    const auto port = client_->port(number);
    const bool isWanted = port && takes(*port);
    if (isWanted) {
        runCall_([&] { makeConnection(*port); });
    }
    return isWanted || !port;
}

/// Many a port is given its alias when it has appeared already.
void ServerLink::lookAgainAtNewPorts() {
    for (const auto number : std::exchange(unwantedBefore_, std::exchange(unwanted_, {}))) {
        connectIfWanted(number);
    }
}

std::optional<ServerStatus> ServerLink::status() const {
    if (!client_) {
        return std::nullopt;
    }
    ServerStatus status{JackClient::serverName(request_), client_->sampleRate(), {}, {}};
    const auto [sources, targets] = client_->connections();
    for (const auto& port : client_->ports()) {
        const auto& connected = port.givesMIDI ? sources : targets;
        if (!port.isOurs) {
            (port.givesMIDI ? status.sources : status.targets)
                .push_back({port, contains(connected, port.name)});
        }
    }
    return status;
}

void ServerLink::setConnected(const PortDescription& port, bool connected) {
    if (!client_) {
        return;
    }
    runCall_([&] {
        if (connected) {
            makeConnection(port);
        } else if (client_->disconnect(port)) {
            forgetConnection(port.name);
            messages_.say((port.givesMIDI ? "no longer hears " : "no longer sends to ") + escaped(port.name));
        }
    });
    onChange_();
}

void ServerLink::forgetConnection(const std::string& port) {
    for (auto* names : {&seen_.sources, &seen_.targets, &noted_.sources, &noted_.targets}) {
        std::erase(*names, port);
    }
}

void ServerLink::disconnect() {
    isWanted_ = false;
    client_.reset();
    gone_.reset();
}

void ServerLink::leave() {
    runCall_([this] { disconnect(); });
    messages_.takeBack(alert_);
    onChange_();
}

void ServerLink::become(const std::string& clientName, const JackClient::Connections& connections) {
    request_.name = clientName;
    returns_ = false;
    noted_ = {};
    seen_ = {};
    connections_.forget();
    connections_.remember(connections.sources, connections.targets);
}

JackClient::Connections ServerLink::connections() {
    const auto now = client_ ? connectionsNow() : seen_;
    return {united(now.sources, connections_.missingSources()),
            united(now.targets, connections_.missingTargets())};
}

void ServerLink::endNotes() {
    using namespace std::chrono_literals;
    if (!client_) {
        return;
    }
    cycle_.finish();
    for (auto waited = 0ms; waited < 1s && !cycle_.isFinished(); waited += 1ms) {
        std::this_thread::sleep_for(1ms);
    }
}

void ServerLink::takeNews() {
    const auto news = news_.take();
    if (!client_) {
        return;
    }
    if (news.isGone) {
        serverIsGone();
        ticks_ = 0;
        return;
    }
    if (news.formatChanged) {
        formatHasChanged();
    }
    for (const auto number : news.newPorts) {
        if (!connectIfWanted(number)) {
            unwanted_.push_back(number);
        }
    }
    if (news.formatChanged || news.portsChanged) {
        onChange_();
    }
}

void ServerLink::formatHasChanged() {
    try {
        takeSampleRate();
    } catch (const ServerFailure& failure) {
        messages_.warn(failure.what());
    }
}

void ServerLink::serverIsGone() {
    connections_.remember(std::move(noted_.sources), std::move(noted_.targets));
    noted_ = {};
    seen_ = {};
    unwanted_ = {};
    unwantedBefore_ = {};
    gone_ = std::move(client_);
    waitForServer(gone);
}

/// A second after the server has gone. One that has only fallen silent may hang, and keep the thread that
/// leaves it: by then the user knows and the window is drawn. Of one that has ended, JACK's library may still
/// be putting other clients out of its books: leaving cancels its thread, which then holds for ever the lock
/// that leaving waits for.
void ServerLink::leaveServer() {
    if (gone_) {
        runCall_([this] { gone_.reset(); });
    }
}

void ServerLink::waitForServer(const std::string& reason) {
    alert_ = reason;
    messages_.warn(reason);
    onChange_();
}

void ServerLink::tick() {
    if (++ticks_ % EventLoop::ticksPerSecond != 0) {
        return;
    }
    tellOfLosses();
    if (client_) {
        noted_ = std::exchange(seen_, connectionsNow());
        lookAgainAtNewPorts();
        listenForCycles();
    } else if (isWanted_) {
        leaveServer();
        tryToReturn();
    }
}

/// Some servers end without a word: PipeWire for one. But a server that has not begun yet is given all the
/// time that it wants.
void ServerLink::listenForCycles() {
    constexpr int longestSilence = 5;
    const auto cycles = cycle_.cycles();
    const bool isSilent = std::exchange(heardCycles_, cycles) == cycles;
    hasHeardCycles_ = hasHeardCycles_ || !isSilent;
    silentSeconds_ = isSilent && hasHeardCycles_ ? silentSeconds_ + 1 : 0;
    if (silentSeconds_ == longestSilence) {
        serverIsGone();
    }
}

/// What a server takes down while it ends is no wish of the user's: so what counts is how things stood a
/// second ago, and only the clock moves that. Nor is a connection whose other port has gone, which comes back
/// with it.
JackClient::Connections ServerLink::connectionsNow() {
    auto now = client_->connections();
    const auto isGone = [this](const std::string& name) { return !client_->hasPort(name); };
    connections_.remember(lost(seen_.sources, now.sources, isGone), lost(seen_.targets, now.targets, isGone));
    return now;
}

void ServerLink::tryToReturn() {
    try {
        connect();
        reportedFailure_.clear();
    } catch (const ServerFailure& failure) {
        if (!failure.noServer() && reportedFailure_ != failure.what()) {
            reportedFailure_ = failure.what();
            messages_.say(reportedFailure_);
        }
    }
}

void ServerLink::tellOfLosses() {
    if (const auto refused = sinceLastTold(toldRefused_, session_.renderer().refused().refused())) {
        messages_.say("the output port was full: " + countWords(refused, "message") +
                      " refused; what came after in these cycles was left out");
    }
    if (const auto tooLong = sinceLastTold(toldTooLong_, session_.renderer().refused().leftOut())) {
        messages_.say(countWords(tooLong, "message") + " left out: longer than the output port takes");
    }
    if (const auto lost = sinceLastTold(toldLost_, cycle_.lost())) {
        messages_.say("the input port was full: " + countWords(lost, "message") + " lost");
    }
    if (session_.renderer().hasLostOutputs() && !std::exchange(toldLostOutputs_, true)) {
        static_assert(RuleProcessor::delayCapacity == 10'000);
        messages_.say("more than 10,000 delayed outputs waited at one time: those that were to leave first "
                      "are lost, the ends of notes perhaps among them");
    }
}

}  // namespace quillo
