// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackHost.hpp"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "hosts/jack/HangWatch.hpp"
#include "hosts/jack/JackHelpText.hpp"
#include "platform/AtomicFile.hpp"
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
      rules_(session_, messages_),
      logs_(console.out, console.outDescriptor),
      link_(session_, messages_, {options.server, options.name, options.startServer},
            ConnectionKeeper(options.connectIn, options.connectOut)),
      settings_(link_),
      panicAnswered_(session_.model()->observePanic([this] { tellOfPanic(); })) {
    link_.setPanicMessage(options.panicMessage);
    session_.setOnEdit([this] { ruleEdited(); });
    link_.setRunCall([this](const ServerLink::Call& call) { callServer(call); });
    if (ManagedSession::managerAddress() != nullptr) {
        managed_.emplace(ManagedSession::Host{session_, link_, settings_, [this] { connect(); }, loop_});
    }
}

JackHost::~JackHost() = default;

void JackHost::loadRules() {
    if (managed_) {
        return;
    }
    rules_.keepIn(stateFolder(std::getenv("XDG_STATE_HOME"), std::getenv("HOME")), options_.name);
    if (const auto& files = rules_.files()) {
        settings_.load(files->settingsFile(), options_.name);
    }
    if (options_.preset) {
        usePreset(session_, *options_.preset);
    } else if (options_.goBack > 0) {
        rules_.goBack(options_.goBack);
    } else {
        rules_.load();
    }
}

void JackHost::setWindow(HostWindow& window) {
    settings_.setWindow(window);
    if (!managed_) {
        window.show(true);
    }
}

void JackHost::windowClosed() {
    managed_ ? managed_->showWindow(false) : loop_.quit(exitSuccess);
}

void JackHost::setConnected(const PortDescription& port, bool connected) {
    link_.setConnected(port, connected);
    if (managed_) {
        managed_->edited();
    }
}

void JackHost::start() {
    if (options_.log) {
        logs_.listenTo(session_.logInput, session_.logOutput);
    }
    loop_.watch(signals_.number(), [this] { takeSignals(); });
    loop_.watch(link_.descriptor(), [this] { link_.takeNews(); });
    loop_.setTick([this] { tick(); });
    managed_ ? join(ManagedSession::managerAddress()) : connect();
}

void JackHost::join(const char* manager) try {
    managed_->join(manager, {options_.name, ::program_invocation_name, options_.window});
} catch (const std::runtime_error& error) {
    goOnAlone(error.what());
}

void JackHost::goOnAlone(const std::string& reason) {
    messages_.warn(reason + "\nMIDI Quillo goes on without a session.");
    managed_.reset();
    loadRules();
    if (auto* window = settings_.window()) {
        window->show(true);
    }
    connect();
}

/// A version that was gone back to becomes the newest when the program runs: a command that fails changes
/// nothing, and can be repeated.
void JackHost::connect() {
    try {
        link_.connect();
    } catch (const ServerFailure& failure) {
        const bool mayWait = managed_ || (failure.noServer() && (options_.window || options_.wait));
        if (!mayWait) {
            throw CommandFailure(exitUnavailable, failure.what() + adviceAfter(failure));
        }
        link_.waitForServer(failure.what() + adviceAfter(failure) +
                            "\nMIDI Quillo waits, and goes on as soon as a server is there.");
    }
    if (options_.goBack > 0) {
        rules_.changed(now());
    }
}

/// Nothing for those who know: they wait for a server, or have told the program to start it.
std::string JackHost::adviceAfter(const ServerFailure& failure) const {
    const bool isNews = failure.noServer() && !options_.startServer && !options_.wait;
    return isNews ? howToGetAServer() : "";
}

/// A call to a server that hangs does not return. The user can end the program all the same, and loses
/// nothing.
void JackHost::callServer(const ServerLink::Call& call) {
    rules_.keepBeforehand(now());
    const HangWatch watch({SIGINT, SIGTERM}, statusOfSaving());
    call();
}

void JackHost::takeSignals() {
    while (const auto signal = signals_.take()) {
        switch (*signal) {
        case SIGHUP: reloadPreset(); break;
        case SIGUSR1: save(); break;
        case SIGUSR2: session_.panic(); break;
        default: loop_.quit(exitSuccess);
        }
    }
}

void JackHost::reloadPreset() {
    if (managed_) {
        messages_.say("the session manager says what the rules are: no preset is read again");
        return;
    }
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

void JackHost::tellOfPanic() {
    if (const auto& answer = session_.model()->panicAnswer()) {
        messages_.say(*answer);
    }
}

/// An unchanged session is saved too: the user who asks for it relies on the file.
void JackHost::save() {
    if (managed_) {
        messages_.say(managed_->save());
        return;
    }
    if (auto* window = settings_.window()) {
        window->finishTyping();
    }
    rules_.changed(now());
    rules_.keepNow(now());
    settingsFailure_.clear();
    keepSettings();
    if (const auto file = rules_.file(); file && !rules_.hasFailed()) {
        messages_.say("the rules are saved in " + escaped(file->string()));
    }
}

/// What cannot be kept is tried again each time, and told once.
void JackHost::keepSettings() try {
    if (!managed_ && rules_.file()) {
        settings_.save(rules_.files()->settingsFile());
        settingsFailure_.clear();
    }
} catch (const FileError& error) {
    if (settingsFailure_ != error.what()) {
        settingsFailure_ = error.what();
        messages_.say("The connections cannot be kept: " + settingsFailure_);
    }
}

void JackHost::ruleEdited() {
    rules_.changed(now());
    if (managed_) {
        managed_->edited();
    }
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
    if (managed_) {
        awaitManager();
    }
    link_.tick();
    rules_.keepUp(now());
    if (++ticks_ % EventLoop::ticksPerSecond == 0) {
        keepSettings();
    }
    logs_.print();
    endOnFatalError();
}

void JackHost::awaitManager() try {
    if (const auto refusal = managed_->tick()) {
        goOnAlone(*refusal);
    }
} catch (const CommandFailure& failure) {
    messages_.say(failure.what());
    loop_.quit(failure.status());
}

void JackHost::endOnFatalError() {
    if (const auto error = session_.processor().fatalErrors.error()) {
        messages_.say(error->inWords());
        loop_.quit(exitFatal);
    }
}

int JackHost::finish(int status) {
    rules_.keepNow(now());
    keepSettings();
    signals_.release();
    link_.endNotes();
    link_.disconnect();
    logs_.print(std::chrono::seconds(1));
    return status == exitSuccess ? statusOfSaving() : status;
}

int JackHost::statusOfSaving() const {
    return rules_.hasFailed() ? exitCannotCreate : exitSuccess;
}

std::string JackHost::title() const {
    if (!link_.isConnected()) {
        return link_.isWanted() ? "MIDI Quillo (no JACK server)" : "MIDI Quillo (no project)";
    }
    const auto client = link_.clientName();
    return client == JackOptions().name ? "MIDI Quillo" : "MIDI Quillo (" + client + ")";
}

}  // namespace quillo
