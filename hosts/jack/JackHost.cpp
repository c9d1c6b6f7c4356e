// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackHost.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "commandline/InputFiles.hpp"
#include "hosts/jack/HangWatch.hpp"
#include "hosts/jack/JackHelpText.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

SessionKeeper::Time now() {
    return std::chrono::steady_clock::now();
}

/// Puts a preset file's rules into the session. Throws a `CommandFailure`.
void usePreset(Session& session, const std::string& file) {
    auto preset = readPresetInput(file, exitBadData, InputReading::prompt);
    try {
        session.install(std::move(preset.data.rules), std::move(preset.data.shelf));
    } catch (const FatalError& error) {
        throw CommandFailure(exitBadData, escaped(file) + ": " + error.inWords());
    }
}

}  // namespace

JackHost::JackHost(const JackOptions& options, const Console& console, EventLoop& loop,
                   SignalDescriptor& signals)
    : options_(options),
      loop_(loop),
      signals_(signals),
      messages_(console.err, session_),
      rules_(stateFolder(std::getenv("XDG_STATE_HOME"), std::getenv("HOME")), options.name, session_,
             messages_),
      logs_(console.out),
      link_(session_, messages_, {options.server, options.name, options.startServer},
            ConnectionKeeper(options.connectIn, options.connectOut)),
      rulesShown_(session_.model()->observeRules([this] { rulesShown(); })),
      panicAnswered_(session_.model()->observePanic([this] { tellOfPanic(); })) {
    link_.setPanicMessage(options.panicMessage);
    session_.setOnEdit([this] { ruleEdited(); });
    link_.setRunCall([this](const ServerLink::Call& call) { callServer(call); });
}

JackHost::~JackHost() = default;

void JackHost::loadRules() {
    if (options_.preset) {
        usePreset(session_, *options_.preset);
    } else if (options_.goBack > 0) {
        rules_.goBack(options_.goBack);
    } else {
        rules_.load();
    }
}

void JackHost::start() {
    if (options_.log) {
        logs_.listenTo(session_.logInput, session_.logOutput);
    }
    loop_.watch(signals_.number(), [this] { takeSignals(); });
    loop_.watch(link_.descriptor(), [this] { link_.takeNews(); });
    loop_.setTick([this] { tick(); });
    try {
        link_.connect();
    } catch (const ServerFailure& failure) {
        const bool mayWait = failure.noServer() && (options_.window || options_.wait);
        if (!mayWait) {
            throw CommandFailure(exitUnavailable, failure.what() + adviceAfter(failure));
        }
        link_.waitForServer(failure.what() + adviceAfter(failure) +
                            "\nMIDI Quillo waits, and goes on as soon as a server is there.");
    }
}

/// Nothing for those who know: they wait for a server, or have told the program to start it.
std::string JackHost::adviceAfter(const ServerFailure& failure) const {
    const bool isNews = failure.noServer() && !options_.startServer && !options_.wait;
    return isNews ? howToGetAServer() : "";
}

/// A server that hangs keeps whoever calls it. The user can end the program all the same, and loses nothing.
void JackHost::callServer(const ServerLink::Call& call) {
    rules_.keepBeforehand(now());
    const HangWatch watch{SIGINT, SIGTERM};
    call();
}

void JackHost::takeSignals() {
    while (const auto signal = signals_.take()) {
        switch (*signal) {
        case SIGHUP: reloadPreset(); break;
        case SIGUSR2: session_.panic(); break;
        default: loop_.quit(exitSuccess);
        }
    }
}

void JackHost::reloadPreset() {
    if (!options_.preset) {
        messages_.say("there is no preset to read again: the program was started without --preset");
        return;
    }
    rules_.keepNow(now());
    try {
        usePreset(session_, *options_.preset);
        endNotes();
        messages_.say(escaped(*options_.preset) + ": read again");
    } catch (const std::exception& error) {
        messages_.warn(wordsOf(error) + "\nThe rules stay as they are.");
    }
}

void JackHost::endNotes() {
    session_.renderer().requests().ask(RenderRequests::Kind::endOfNotes);
}

/// Where none of the rules is left that were shown before, others have taken the place of all: those of a
/// preset, or the ones before it.
void JackHost::rulesShown() {
    std::set<UUID> shown;
    for (const auto& element : session_.model()->rules()) {
        shown.insert(element.id);
    }
    const auto isLeft = [&](const UUID& id) { return shown.contains(id); };
    if (!shown.empty() && !shown_.empty() && std::ranges::none_of(shown_, isLeft)) {
        endNotes();
    }
    shown_ = std::move(shown);
}

void JackHost::tellOfPanic() {
    if (const auto& answer = session_.model()->panicAnswer()) {
        messages_.say(*answer);
    }
}

void JackHost::ruleEdited() {
    rules_.changed(now());
    if (options_.preset && !editTold_) {
        editTold_ = true;
        if (const auto file = rules_.file()) {
            messages_.say("the edited rules are kept in " + escaped(file->string()) + "; " +
                          escaped(*options_.preset) + " stays as it is");
        }
    }
}

/// A window drains the session by itself.
void JackHost::tick() {
    if (!options_.window) {
        session_.drain();
    }
    link_.tick();
    rules_.keepUp(now());
    logs_.print();
    endOnFatalError();
}

void JackHost::endOnFatalError() {
    if (const auto error = session_.processor().fatalErrors.error()) {
        messages_.say(error->inWords());
        loop_.quit(exitFatal);
    }
}

void JackHost::finish() {
    rules_.keepNow(now());
    signals_.release();
    link_.endNotes();
    link_.disconnect();
    logs_.print();
}

std::string JackHost::title() const {
    if (!link_.isConnected()) {
        return "MIDI Quillo (no JACK server)";
    }
    const auto client = link_.clientName();
    return client == JackOptions().name ? "MIDI Quillo" : "MIDI Quillo (" + client + ")";
}

}  // namespace quillo
