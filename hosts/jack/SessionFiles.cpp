// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionFiles.hpp"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"

namespace quillo {

namespace {

namespace fs = std::filesystem;

bool mayStand(char character) {
    constexpr std::string_view allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_ ";
    return allowed.find(character) != std::string_view::npos;
}

/// No two names have the same stem, and none looks like another's older version.
std::string stemOf(const std::string& name) {
    constexpr std::array<char, 17> digits{"0123456789ABCDEF"};
    std::string stem;
    for (const char character : name) {
        if (mayStand(character)) {
            stem += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            stem += {'%', digits[byte / 16U], digits[byte % 16U]};
        }
    }
    return stem;
}

void makeFolders(const fs::path& folder) {
    constexpr mode_t forTheUserAlone = 0700;
    if (folder.empty() || fs::is_directory(folder)) {
        return;
    }
    makeFolders(folder.parent_path());
    if (::mkdir(folder.c_str(), forTheUserAlone) != 0 && errno != EEXIST) {
        throw FileError(folder.string() + ": cannot be made: " + std::strerror(errno));
    }
}

SessionFiles::Version readVersion(std::size_t age, const fs::path& file) {
    SessionFiles::Version version{age, file, {}, {}, 0, {}};
    struct stat status{};
    if (::stat(file.c_str(), &status) == 0) {
        version.saved = std::chrono::system_clock::from_time_t(status.st_mtime);
    }
    try {
        version.document = readWholeFile(file);
        version.rules = PluginData::read(version.document).rules.size();
    } catch (const std::exception& error) {
        version.problem = error.what();
    }
    return version;
}

}  // namespace

std::optional<fs::path> stateFolder(const char* xdgStateHome, const char* home) {
    if (xdgStateHome != nullptr && fs::path(xdgStateHome).is_absolute()) {
        return fs::path(xdgStateHome) / "midi-quillo";
    }
    if (home != nullptr && fs::path(home).is_absolute()) {
        return fs::path(home) / ".local" / "state" / "midi-quillo";
    }
    return std::nullopt;
}

SessionFiles::SessionFiles(fs::path folder, const std::string& name)
    : folder_(std::move(folder)), stem_(stemOf(name)) {}

fs::path SessionFiles::file(std::size_t age) const {
    return folder_ / (age == 0 ? stem_ + ".json" : stem_ + "." + std::to_string(age) + ".json");
}

fs::path SessionFiles::lockFile() const {
    return folder_ / (stem_ + ".lock");
}

void SessionFiles::makeFolder() const {
    makeFolders(folder_);
}

std::vector<SessionFiles::Version> SessionFiles::versions() const {
    std::vector<Version> found;
    for (std::size_t age = 0; age < keptVersions; ++age) {
        std::error_code ignored;
        if (fs::exists(file(age), ignored)) {
            found.push_back(readVersion(age, file(age)));
        }
    }
    return found;
}

void SessionFiles::add(std::span<const std::uint8_t> document) {
    keepNewest();
    replaceNewest(document);
}

void SessionFiles::replaceNewest(std::span<const std::uint8_t> document) {
    makeFolder();
    writeWholeFile(file(0), document, Existing::replace);
}

/// Every version grows older. The newest gets a second name, so that it is never missing under its first.
void SessionFiles::keepNewest() {
    std::error_code error;
    if (!fs::exists(file(0), error)) {
        return;
    }
    for (auto age = keptVersions - 1; age > 1; --age) {
        if (fs::exists(file(age - 1), error)) {
            fs::rename(file(age - 1), file(age), error);
        }
    }
    fs::remove(file(1), error);
    fs::create_hard_link(file(0), file(1), error);
    if (error) {
        fs::copy_file(file(0), file(1), error);
    }
    if (error) {
        throw FileError(file(1).string() + ": cannot be written: " + error.message());
    }
}

}  // namespace quillo
