// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "persistence/PluginData.hpp"

namespace quillo {

/// The folder in which the user's programs keep what they remember, from the values of XDG_STATE_HOME and
/// HOME (null when they are not set). Nothing when both leave it open.
[[nodiscard]] std::optional<std::filesystem::path> stateFolder(const char* xdgStateHome, const char* home);

/// The rules of the last session and those before them: preset files `NAME.json` (the newest), `NAME.1.json`
/// (the one before) and so on, ten in all. Each is written whole or not at all, and the newest is there at
/// all times. Not safe for two programs at once: see `SessionLock`. [main]
class SessionFiles {
public:
    static constexpr std::size_t keptVersions = 10;

    /// `name` is any name of a session; what no file name should hold is escaped.
    SessionFiles(std::filesystem::path folder, const std::string& name);

    /// One version of the rules.
    struct Version {
        std::size_t age = 0;  ///< 0 for the newest
        std::filesystem::path file;
        std::chrono::system_clock::time_point saved;

        /// The rules, those that are switched off among them. Throws what makes the file unusable, in words
        /// for a musician.
        [[nodiscard]] PluginData read() const;
    };

    /// All that are there, newest first.
    [[nodiscard]] std::vector<Version> versions() const;

    /// Puts a new version in front; the oldest goes when there are too many. Throws `FileError`.
    void add(std::span<const std::uint8_t> document);
    /// Writes over the newest version. Throws `FileError`.
    void replaceNewest(std::span<const std::uint8_t> document);

    /// Where the version of this age is, or would be.
    [[nodiscard]] std::filesystem::path file(std::size_t age) const;
    [[nodiscard]] std::filesystem::path lockFile() const;
    /// Where `SessionSettings` are kept.
    [[nodiscard]] std::filesystem::path settingsFile() const;
    /// Takes away what a program that was killed may have left on its way to its place. For the one who has
    /// the session.
    void removeLeftovers() const;
    /// Makes the folder, for the user alone. Throws `FileError`.
    void makeFolder() const;

private:
    /// The newest version before it has its name, and the one before while it has two.
    [[nodiscard]] std::filesystem::path next() const;
    [[nodiscard]] std::filesystem::path before() const;
    [[nodiscard]] bool isLeftover(const std::string& name) const;
    void keepNewest();

    std::filesystem::path folder_;
    std::string stem_;
};

}  // namespace quillo
