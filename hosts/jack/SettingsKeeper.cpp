// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SettingsKeeper.hpp"

#include <utility>

namespace quillo {

void SettingsKeeper::setWindow(HostWindow& window) {
    window_ = &window;
    window.remember(settings_.window);
}

const SessionSettings& SettingsKeeper::load(const std::filesystem::path& file,
                                            const std::string& clientName) {
    settings_ = readSettings(file);
    link_.become(clientName, {settings_.sources, settings_.targets});
    if (window_ != nullptr) {
        window_->remember(settings_.window);
    }
    return settings_;
}

void SettingsKeeper::save(const std::filesystem::path& file) {
    auto [sources, targets] = link_.connections();
    SessionSettings now{std::move(sources), std::move(targets),
                        window_ != nullptr ? window_->settings() : settings_.window};
    if (settings_ != now) {
        writeSettings(file, now);
        settings_ = std::move(now);
    }
}

}  // namespace quillo
