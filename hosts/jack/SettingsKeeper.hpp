// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

#include "hosts/jack/HostWindow.hpp"
#include "hosts/jack/ServerLink.hpp"
#include "hosts/jack/SessionSettings.hpp"

namespace quillo {

/// Carries a session's settings from their file to the link and the window, and back. [main]
class SettingsKeeper {
public:
    explicit SettingsKeeper(ServerLink& link) : link_(link) {}

    /// From now on there is a window, which remembers what was loaded. It must outlive every `save`.
    void setWindow(HostWindow& window);
    /// Null without one.
    [[nodiscard]] HostWindow* window() const { return window_; }

    /// Takes over the settings in the file, or without a file those of a first session, for a client of this
    /// name, and returns them. While there is no link.
    const SessionSettings& load(const std::filesystem::path& file, const std::string& clientName);

    /// Writes the settings unless the file has them. Throws `FileError`; the next time it tries again.
    void save(const std::filesystem::path& file);

private:
    ServerLink& link_;
    HostWindow* window_ = nullptr;
    SessionSettings settings_;  ///< as the file has them, or would
};

}  // namespace quillo
