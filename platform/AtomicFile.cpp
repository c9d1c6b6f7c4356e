// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>

#include "platform/Descriptor.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, const std::string& what, int error = errno) {
    throw FileError(path, what + ": " + std::strerror(error));
}

[[noreturn]] void refuse(const fs::path& path, const std::string& why) {
    throw FileError(path, why);
}

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

/// Behind the name of a file that is not finished, before the numbers of the process and of the file.
constexpr std::string_view unfinished = ".tmp-";

/// A name beside `path` that this process has not used before.
std::string nameBeside(const fs::path& path) {
    static std::atomic<unsigned> used{0};
    return path.string() + std::string(unfinished) + std::to_string(::getpid()) + "-" +
           std::to_string(used++);
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// A file beside the final one, taken away again unless it reaches its place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : target_(target), descriptor_(createBeside(target, name_)) {
        if (!descriptor_.isOpen() && errno == ENAMETOOLONG) {
            descriptor_ = Descriptor(createBeside(target.parent_path() / "midi-quillo", name_));
        }
        if (!descriptor_.isOpen()) {
            fail(target_, "cannot be written in this folder");
        }
    }
    ~TemporaryFile() {
        if (!name_.empty()) {
            ::unlink(name_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// A file that replaces another gets the other's owner and group, as far as the process may give them
    /// away, and its mode, before it holds anything; a new one keeps the process's defaults.
    void takeOwnerAndModeOfTarget() {
        constexpr mode_t modeBits = 07777;
        struct stat replaced{};
        if (::stat(target_.c_str(), &replaced) != 0) {
            return;
        }
        takeOwner(replaced);
        if (::fchmod(descriptor_.number(), replaced.st_mode & modeBits) != 0) {
            fail(target_, "cannot be written");
        }
    }

    void write(std::span<const std::uint8_t> bytes) {
        while (!bytes.empty()) {
            const auto written = ::write(descriptor_.number(), bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) {
                fail(target_, "cannot be written");
            }
            bytes = bytes.subspan(static_cast<std::size_t>(written < 0 ? 0 : written));
        }
    }

    void finish() {
        if (::fsync(descriptor_.number()) != 0 || !descriptor_.close()) {
            fail(target_, "cannot be written");
        }
    }

    void replaceTarget() {
        if (::rename(name_.c_str(), target_.c_str()) != 0) {
            fail(target_, "cannot be put in place");
        }
        name_.clear();
    }

    /// A hard link never replaces a file that is there.
    void becomeTarget() {
        if (::link(name_.c_str(), target_.c_str()) == 0) {
            return;
        }
        if (errno == EEXIST || isThere(target_)) {
            fail(target_, "cannot be written", EEXIST);
        }
        replaceTarget();
    }

private:
    /// The group alone is within the reach of its members.
    void takeOwner(const struct stat& replaced) {
        constexpr auto same = static_cast<uid_t>(-1);
        if (::fchown(descriptor_.number(), replaced.st_uid, replaced.st_gid) != 0) {
            static_cast<void>(!::fchown(descriptor_.number(), same, replaced.st_gid));
        }
    }

    /// Steps around what an interrupted process of the same number may have left.
    static int createBeside(const fs::path& target, std::string& name) {
        constexpr mode_t beforeMask = 0666;
        int number = -1;
        do {
            name = nameBeside(target);
            number = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, beforeMask);
        } while (number < 0 && errno == EEXIST);
        return number;
    }

    fs::path target_;
    std::string name_;
    Descriptor descriptor_;
};

/// Where the bytes really go: a link is followed, so that it stays a link.
fs::path resolve(const fs::path& path) {
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) {
        if (fs::is_symlink(fs::symlink_status(path, error))) {
            refuse(path, "cannot be written: it is a link that leads nowhere");
        }
        return path;
    }
    if (!fs::is_regular_file(status)) {
        refuse(path, "cannot be written: it is not a regular file");
    }
    return fs::canonical(path);
}

Descriptor openForReading(const fs::path& path, int flags) {
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | flags));
    if (!file.isOpen()) {
        fail(path, "cannot be opened");
    }
    return file;
}

struct stat statusOf(const Descriptor& file, const fs::path& path) {
    struct stat status{};
    if (::fstat(file.number(), &status) != 0) {
        fail(path, "cannot be read");
    }
    return status;
}

/// `64 MiB`, or bytes where the size is no whole number of those.
std::string sizeText(std::uint64_t bytes) {
    constexpr std::uint64_t mebibyte = 1024UL * 1024;
    return bytes % mebibyte == 0 ? std::to_string(bytes / mebibyte) + " MiB"
                                 : std::to_string(bytes) + " bytes";
}

void requireWithin(std::uint64_t most, std::uint64_t size, const fs::path& path) {
    if (size > most) {
        throw FileTooLarge(path, "cannot be read: it is larger than " + sizeText(most));
    }
}

/// Nothing is read of a regular file that is too large; of anything else, no more than `most` and a chunk.
std::vector<std::uint8_t> readAll(const Descriptor& file, const fs::path& path, std::uint64_t most) {
    std::vector<std::uint8_t> bytes;
    if (const auto status = statusOf(file, path); S_ISREG(status.st_mode)) {
        requireWithin(most, static_cast<std::uint64_t>(status.st_size), path);
        bytes.reserve(static_cast<std::size_t>(status.st_size));
    }
    std::array<std::uint8_t, 65536> chunk{};
    for (;;) {
        const auto count = ::read(file.number(), chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(path, "cannot be read");
        }
        if (count == 0) {
            return bytes;
        }
        requireWithin(most, bytes.size() + static_cast<std::size_t>(count), path);
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
    }
}

}  // namespace

FileError::FileError(const fs::path& path, const std::string& reason)
    : runtime_error(escaped(path.string()) + ": " + reason), reason_(reason) {}

std::vector<std::uint8_t> readWholeFile(const fs::path& path, std::uint64_t most) {
    return readAll(openForReading(path, 0), path, most);
}

std::vector<std::uint8_t> readRegularFile(const fs::path& path, std::uint64_t most) {
    const auto file = openForReading(path, O_NONBLOCK);
    if (!S_ISREG(statusOf(file, path).st_mode)) {
        refuse(path, "cannot be read: it is not a regular file");
    }
    return readAll(file, path, most);
}

void writeWholeFile(const fs::path& path, std::span<const std::uint8_t> bytes, Existing existing) {
    const auto target = resolve(path);
    if (existing == Existing::keep && isThere(target)) {
        fail(path, "cannot be written", EEXIST);
    }
    TemporaryFile file(target);
    file.takeOwnerAndModeOfTarget();
    file.write(bytes);
    file.finish();
    if (existing == Existing::keep) {
        file.becomeTarget();
    } else {
        file.replaceTarget();
    }
    makeNamesDurable(target.parent_path());
}

bool isUnfinished(std::string_view name, std::string_view target) {
    if (!name.starts_with(target) || !name.substr(target.size()).starts_with(unfinished)) {
        return false;
    }
    const auto numbers = name.substr(target.size() + unfinished.size());
    const auto dash = numbers.find('-');
    return dash != std::string_view::npos && isNumber(numbers.substr(0, dash)) &&
           isNumber(numbers.substr(dash + 1));
}

void makeNamesDurable(const fs::path& folder) {
    const Descriptor opened(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC));
    if (opened.isOpen()) {
        static_cast<void>(!::fsync(opened.number()));
    }
}

}  // namespace quillo
