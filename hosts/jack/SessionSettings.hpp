// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillo {

/// What the program's window remembers.
struct WindowSettings {
    bool isShown = false;  ///< under a session manager; a program on its own shows it anyway
    std::string place;     ///< where it is and how large, in its own words; empty for where it opens first
    std::string presetFolder;  ///< of the last import or export; empty before

    bool operator==(const WindowSettings&) const = default;
};

/// What a session remembers besides its rules, in a file beside them.
struct SessionSettings {
    std::vector<std::string> sources;  ///< the ports that the input was connected to, by their full names
    std::vector<std::string> targets;  ///< those of the output
    WindowSettings window;

    bool operator==(const SessionSettings&) const = default;
};

/// Reads the file. Whatever cannot be read is as at first: a session does without.
[[nodiscard]] SessionSettings readSettings(const std::filesystem::path& file);

/// Writes the file whole or not at all. Throws `FileError`.
void writeSettings(const std::filesystem::path& file, const SessionSettings& settings);

}  // namespace quillo
