// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "hosts/jack/SessionKeeper.hpp"
#include "hosts/jack/SessionLock.hpp"
#include "hosts/jack/UserMessages.hpp"
#include "session/Session.hpp"

namespace quillo {

/// Rules that outlive the program. A second program of the same name has a session of its own:
/// "NAME-2". Where nothing may be written the rules are read all the same, and without any place they still
/// run; the user is told. [main]
class SessionRules {
public:
    /// At first they are kept nowhere.
    SessionRules(Session& session, UserMessages& messages) : session_(session), messages_(messages) {}

    /// Once: where they are kept from now on. `folder` is nothing when there is no place.
    void keepIn(const std::optional<std::filesystem::path>& folder, const std::string& name);

    /// Installs the last session's rules; when its newest version cannot be used, the newest that can.
    /// A first session leaves the rules as they are.
    void load();

    /// Installs those of this many versions ago; `changed` makes them the newest. Throws a `CommandFailure`
    /// when they are not there or cannot be used.
    void goBack(std::size_t versions);

    /// The rules are to be kept: the user has edited them, or asked for it.
    void changed(SessionKeeper::Time now);
    /// To be called often: saves what changed.
    void keepUp(SessionKeeper::Time now);
    /// Saves before something that may never end.
    void keepBeforehand(SessionKeeper::Time now);
    /// Saves at the end.
    void keepNow(SessionKeeper::Time now);

    /// Where the rules are kept; nothing when they are not.
    [[nodiscard]] std::optional<std::filesystem::path> file() const;
    /// The session's files, which may only be readable; nothing when there is no place for any.
    [[nodiscard]] const std::optional<SessionFiles>& files() const { return files_; }
    /// Whether the last attempt to save has failed.
    [[nodiscard]] bool hasFailed() const { return keeper_ && keeper_->hasFailed(); }

private:
    void claim(const std::filesystem::path& folder, const std::string& name);
    /// Why it cannot be used; nothing when it is installed now.
    std::optional<std::string> tryToUse(const SessionFiles::Version& version);
    void tell(const std::optional<std::string>& problem);

    Session& session_;
    UserMessages& messages_;
    std::optional<SessionFiles> files_;    ///< of this session; nothing when there is no place for any
    std::optional<SessionLock> lock_;      ///< taken when the session is this program's to write
    std::optional<SessionKeeper> keeper_;  ///< there with the lock
};

/// Every version of a session's rules, a line each: how far back, when it was saved, and what it holds.
[[nodiscard]] std::string historyText(const SessionFiles& files);

}  // namespace quillo
