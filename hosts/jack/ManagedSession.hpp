// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "hosts/jack/EventLoop.hpp"
#include "hosts/jack/NSMClient.hpp"
#include "hosts/jack/ServerLink.hpp"
#include "hosts/jack/SessionFiles.hpp"
#include "hosts/jack/SettingsKeeper.hpp"
#include "session/Session.hpp"

namespace quillo {

/// The program's part in a session that a session manager keeps (NSM): there are no rules, no client and no
/// window before the manager opens a project, and nothing is saved unless it says so. A project is a folder
/// with a preset, `rules.json`, and settings beside it. [main]
class ManagedSession final : private NSMClient::Program {
public:
    /// What a project is made of. All must outlive this.
    struct Host {
        Session& session;
        ServerLink& link;
        SettingsKeeper& settings;
        /// Makes the link, or waits for a server.
        std::function<void()> connect;
        EventLoop& loop;
    };

    /// The address of the session manager that has started the program, in NSM_URL; null without one.
    [[nodiscard]] static const char* managerAddress();

    explicit ManagedSession(Host host) : host_(std::move(host)) {}
    ~ManagedSession() override;
    ManagedSession(const ManagedSession&) = delete;
    ManagedSession& operator=(const ManagedSession&) = delete;

    /// Announces the program to the manager. Throws `std::runtime_error` for an address that leads nowhere.
    void join(const std::string& address, const NSMClient::Announcement& announcement);

    /// To be called `EventLoop::ticksPerSecond` times a second. Why there is no session: the manager refuses
    /// the program, or does not answer. Final.
    [[nodiscard]] const std::optional<std::string>& tick();

    /// The rules, or the connections, have been edited.
    void edited() { manager_->setDirty(true); }

    /// Saves the project at the user's own wish: where, or why not, in words.
    [[nodiscard]] std::string save();

    /// As the manager or the user wants it; nothing in a program without one.
    void showWindow(bool isShown) override;

private:
    NSMClient::Outcome openProject(const NSMClient::Project& project) override;
    NSMClient::Outcome saveProject() override;
    void leaveProject();
    NSMClient::Outcome loadRules(const SessionFiles& files);

    Host host_;
    std::optional<NSMClient> manager_;     ///< there since `join`
    std::optional<SessionFiles> project_;  ///< that is open
    std::string alert_;                    ///< why the one that was asked for is not
};

}  // namespace quillo
