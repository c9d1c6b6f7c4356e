// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionFiles.hpp"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "persistence/DecodingError.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

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
    std::error_code ignored;
    if (folder.empty() || fs::is_directory(folder, ignored)) {
        return;
    }
    makeFolders(folder.parent_path());
    if (::mkdir(folder.c_str(), forTheUserAlone) != 0 && errno != EEXIST) {
        throw FileError(escaped(folder.string()) + ": cannot be made: " + std::strerror(errno));
    }
}

void putInPlace(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) {
        throw FileError(escaped(to.string()) + ": cannot be written: " + error.message());
    }
    makeNamesDurable(to.parent_path());
}

/// By a link where the file system knows such, else by a copy.
void nameTwice(const fs::path& file, const fs::path& second) {
    std::error_code error;
    if (fs::create_hard_link(file, second, error); error && !fs::copy_file(file, second, error)) {
        throw FileError(escaped(second.string()) + ": cannot be written: " + error.message());
    }
}

/// A file that is on its way to its place; one that stays behind is taken away, also that of a program that
/// was interrupted.
struct Passing {
    explicit Passing(fs::path path) : file(std::move(path)) { remove(); }
    ~Passing() { remove(); }
    Passing(const Passing&) = delete;
    Passing& operator=(const Passing&) = delete;

    void remove() const {
        std::error_code ignored;
        fs::remove(file, ignored);
    }

    fs::path file;
};

std::chrono::system_clock::time_point timeOf(const fs::path& file) {
    struct stat status{};
    return ::stat(file.c_str(), &status) == 0 ? std::chrono::system_clock::from_time_t(status.st_mtime)
                                              : std::chrono::system_clock::time_point();
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

fs::path SessionFiles::settingsFile() const {
    return folder_ / (stem_ + ".settings");
}

void SessionFiles::makeFolder() const {
    makeFolders(folder_);
}

fs::path SessionFiles::next() const {
    return folder_ / (stem_ + ".tmp-next");
}

fs::path SessionFiles::before() const {
    return folder_ / (stem_ + ".tmp-before");
}

/// What has not reached its place. Nothing else: users keep copies here, under names of their own.
bool SessionFiles::isLeftover(const std::string& name) const {
    const auto isUnfinishedOf = [&](const fs::path& file) {
        return isUnfinished(name, file.filename().string());
    };
    return name == next().filename() || name == before().filename() || isUnfinishedOf(file(0)) ||
           isUnfinishedOf(next()) || isUnfinishedOf(settingsFile());
}

void SessionFiles::removeLeftovers() const {
    std::error_code error;
    std::vector<fs::path> leftovers;
    for (fs::directory_iterator found(folder_, error); !error && found != fs::directory_iterator();
         found.increment(error)) {
        if (isLeftover(found->path().filename().string())) {
            leftovers.push_back(found->path());
        }
    }
    for (const auto& file : leftovers) {
        fs::remove(file, error);
    }
}

PluginData SessionFiles::Version::read() const {
    const auto document = readRegularFile(file);
    try {
        return PluginData::read(document);
    } catch (const DecodingError& error) {
        throw std::runtime_error(problemInWords(error, document));
    }
}

std::vector<SessionFiles::Version> SessionFiles::versions() const {
    std::vector<Version> found;
    for (std::size_t age = 0; age < keptVersions; ++age) {
        std::error_code ignored;
        if (fs::exists(file(age), ignored)) {
            found.push_back({age, file(age), timeOf(file(age))});
        }
    }
    return found;
}

/// What takes up room comes first: when there is none, every version still is where it was.
void SessionFiles::add(std::span<const std::uint8_t> document) {
    makeFolder();
    const Passing passing(next());
    writeWholeFile(passing.file, document, Existing::replace);
    keepNewest();
    putInPlace(passing.file, file(0));
}

void SessionFiles::replaceNewest(std::span<const std::uint8_t> document) {
    makeFolder();
    writeWholeFile(file(0), document, Existing::replace);
}

/// Every version grows older. The newest gets a second name, so that it is never missing under its first.
void SessionFiles::keepNewest() {
    std::error_code ignored;
    if (!fs::exists(file(0), ignored)) {
        return;
    }
    const Passing second(before());
    nameTwice(file(0), second.file);
    for (auto age = keptVersions - 1; age > 1; --age) {
        if (fs::exists(file(age - 1), ignored)) {
            fs::rename(file(age - 1), file(age), ignored);
        }
    }
    putInPlace(second.file, file(1));
}

}  // namespace quillo
