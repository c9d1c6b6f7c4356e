// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>

#include "commandline/CommandFailure.hpp"
#include "commandline/Console.hpp"
#include "hosts/jack/EventLoop.hpp"
#include "hosts/jack/HostWindow.hpp"
#include "hosts/jack/JackOptions.hpp"
#include "hosts/jack/LogPrinter.hpp"
#include "hosts/jack/ManagedSession.hpp"
#include "hosts/jack/ServerLink.hpp"
#include "hosts/jack/SessionRules.hpp"
#include "hosts/jack/SettingsKeeper.hpp"
#include "hosts/jack/SignalDescriptor.hpp"
#include "hosts/jack/UserMessages.hpp"
#include "session/Session.hpp"

namespace quillo {

/// The program but for its window: a session between two MIDI ports of a JACK server, whose rules outlive the
/// program. Order: make it, `loadRules`, `setWindow` if there is a window, `start`, run the loop, `finish`.
///
/// Where a session manager has started the program, it is the manager who says what is opened and when it is
/// saved; when it does not answer, the program goes on by itself. See `ManagedSession`. [main]
class JackHost {
public:
    /// `signals` are `ownSignals`. All must outlive it. Throws a `UsageError` for invalid
    /// patterns.
    JackHost(const JackOptions& options, const Console& console, EventLoop& loop, SignalDescriptor& signals);
    ~JackHost();
    JackHost(const JackHost&) = delete;
    JackHost& operator=(const JackHost&) = delete;

    /// What the program takes as wishes: to end (SIGINT, SIGTERM), to read the preset again (SIGHUP), to save
    /// (SIGUSR1), to end all notes (SIGUSR2).
    static constexpr std::initializer_list<int> ownSignals{SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2};

    /// Throws a `CommandFailure` for a preset, or a version asked for, that cannot be used. Leaves it to the
    /// session manager where there is one.
    void loadRules();

    /// Shows the window, unless a session manager is to say so. It must outlive `finish`.
    void setWindow(HostWindow& window);

    /// Announces the program to the session manager, or makes the link to the server. When there is no
    /// server, waits for one if there is a window or the user said so, else throws a `CommandFailure`.
    void start();

    /// The user has closed the window: it is hidden when a session manager can show it again, else the
    /// program ends.
    void windowClosed();

    /// Connects a port, or takes its connection down, as the user wishes in the window; a session manager
    /// learns that there is something to save.
    void setConnected(const PortDescription& port, bool connected);

    /// The notes that sound end at the start of the next cycle: for an editor that has put a preset in the
    /// place of the rules.
    void endNotes();

    /// Saves the rules and reads the preset again; one that cannot be used leaves the rules as they are.
    void reloadPreset();

    /// Saves the rules, unless a session manager does, ends the notes that sound and leaves the server. From
    /// here on a signal ends the program at once: a server that hangs must not keep it. Returns the exit
    /// status: this one, unless it is a success and the rules could not be saved.
    int finish(int status = exitSuccess);

    [[nodiscard]] Session& session() { return session_; }

    /// What the window's title should be.
    [[nodiscard]] std::string title() const;
    /// The link to the server, for the window's line about it.
    [[nodiscard]] ServerLink& link() { return link_; }
    /// `callback` runs whenever the title, or what the link says of the server, has changed.
    void setOnChange(std::function<void()> callback) { link_.setOnChange(std::move(callback)); }

private:
    void connect();
    void join(const char* manager);
    void goOnAlone(const std::string& reason);
    void awaitManager();
    void keepSettings();
    void save();
    [[nodiscard]] int statusOfSaving() const;
    void ruleEdited();
    void tellOfPanic();
    [[nodiscard]] std::string adviceAfter(const ServerFailure& failure) const;
    void callServer(const ServerLink::Call& call);
    void tick();
    void takeSignals();
    void endOnFatalError();

    const JackOptions options_;
    EventLoop& loop_;
    SignalDescriptor& signals_;
    Session session_;
    UserMessages messages_;
    SessionRules rules_;
    LogPrinter logs_;
    ServerLink link_;
    SettingsKeeper settings_;
    std::string settingsFailure_;            ///< why they cannot be kept, as far as the user knows
    std::optional<ManagedSession> managed_;  ///< where a session manager has started the program
    std::uint64_t ticks_ = 0;
    const Observation panicAnswered_;
    bool editTold_ = false;  ///< whether the user knows where edits of a preset are kept
};

}  // namespace quillo
