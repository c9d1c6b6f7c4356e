// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ManagedSession.hpp"

#include <cstdlib>
#include <exception>
#include <utility>

#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

const char* ManagedSession::managerAddress() {
    const auto* address = std::getenv("NSM_URL");
    return address != nullptr && *address != '\0' ? address : nullptr;
}

ManagedSession::~ManagedSession() {
    if (manager_) {
        host_.loop.unwatch(manager_->descriptor());
    }
}

void ManagedSession::join(const std::string& address, const NSMClient::Announcement& announcement) {
    manager_.emplace(address, static_cast<NSMClient::Program&>(*this));
    host_.loop.watch(manager_->descriptor(), [this] { manager_->receive(); });
    manager_->announce(announcement);
}

const std::optional<std::string>& ManagedSession::tick() {
    manager_->tick();
    return manager_->refusal();
}

/// The project that was open stays closed when the new one cannot be opened: it is not this program's any
/// more.
NSMClient::Outcome ManagedSession::openProject(const NSMClient::Project& project) {
    leaveProject();
    const SessionFiles files(project.path, "rules");
    files.removeLeftovers();
    if (auto failure = loadRules(files)) {
        alert_ = failure->words + "\nNo project is open: nothing here can be saved.";
        host_.session.tellUser(alert_);
        return failure;
    }
    project_ = files;
    const auto& settings = host_.settings.load(files.settingsFile(), project.clientID);
    host_.connect();
    showWindow(settings.window.isShown);
    return std::nullopt;
}

/// Rules that come next count as loaded, like those of a program that starts.
void ManagedSession::leaveProject() {
    using Kind = RenderRequests::Kind;
    host_.link.endNotes();
    host_.link.leave();
    host_.session.takeBack(alert_);
    project_.reset();
    host_.session.install({});
    host_.session.renderer().requests().ask(Kind::cancelAll);
    host_.session.renderer().requests().ask(Kind::load);
    manager_->setDirty(false);
}

NSMClient::Outcome ManagedSession::loadRules(const SessionFiles& files) {
    const auto versions = files.versions();
    if (versions.empty()) {
        return std::nullopt;
    }
    try {
        auto [rules, shelf] = versions.front().read();
        host_.session.install(std::move(rules), std::move(shelf));
        return std::nullopt;
    } catch (const std::exception& error) {
        return NSMClient::Failure{NSMClient::Failure::badProject,
                                  escaped(files.file(0).string()) + " cannot be used: " + wordsOf(error)};
    }
}

NSMClient::Outcome ManagedSession::saveProject() {
    if (!project_) {
        return NSMClient::Failure{NSMClient::Failure::noSessionOpen, "no session is open"};
    }
    if (auto* window = host_.settings.window()) {
        window->finishTyping();
    }
    project_->replaceNewest(host_.session.save());
    host_.settings.save(project_->settingsFile());
    manager_->setDirty(false);
    return std::nullopt;
}

std::string ManagedSession::save() try {
    const auto failure = saveProject();
    return failure ? "The rules cannot be saved: " + failure->words
                   : "the rules are saved in " + escaped(project_->file(0).string());
} catch (const std::exception& error) {
    return "The rules cannot be saved: " + wordsOf(error);
}

void ManagedSession::showWindow(bool isShown) {
    if (auto* window = host_.settings.window()) {
        window->show(isShown);
        manager_->setWindowShown(isShown);
    }
}

}  // namespace quillo
