// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace quillo {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, const std::string& what, int error = errno) {
    throw FileError(path.string() + ": " + what + ": " + std::strerror(error));
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return number_; }
    int close() { return number_ < 0 ? 0 : ::close(std::exchange(number_, -1)); }

private:
    int number_;
};

/// A file beside the final one, taken away again unless it reaches its place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : target_(target), name_(target.string() + ".XXXXXX"), descriptor_(::mkstemp(name_.data())) {
        if (descriptor_.number() < 0) {
            fail(target_, "cannot write in this folder");
        }
    }
    ~TemporaryFile() {
        if (!name_.empty()) {
            ::unlink(name_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(std::span<const std::uint8_t> bytes) {
        while (!bytes.empty()) {
            const auto written = ::write(descriptor_.number(), bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) {
                fail(target_, "cannot write");
            }
            bytes = bytes.subspan(static_cast<std::size_t>(written < 0 ? 0 : written));
        }
    }

    void finish(mode_t mode) {
        if (::fchmod(descriptor_.number(), mode) != 0 || ::fsync(descriptor_.number()) != 0 ||
            descriptor_.close() != 0) {
            fail(target_, "cannot write");
        }
    }

    void replaceTarget() {
        if (::rename(name_.c_str(), target_.c_str()) != 0) {
            fail(target_, "cannot put the new file in place");
        }
        name_.clear();
    }

    /// A hard link never replaces a file that is there.
    void becomeTarget() {
        if (::link(name_.c_str(), target_.c_str()) == 0) {
            return;
        }
        if (errno == EEXIST || fs::exists(target_)) {
            fail(target_, "not written", EEXIST);
        }
        replaceTarget();
    }

private:
    fs::path target_;
    std::string name_;
    Descriptor descriptor_;
};

/// The mode of the file that is replaced, or what a new file gets under the process's mask.
mode_t modeFor(const fs::path& path) {
    struct stat existing{};
    if (::stat(path.c_str(), &existing) == 0) {
        return existing.st_mode & 07777;
    }
    const auto mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/// Where the bytes really go: a link is followed, so that it stays a link.
fs::path resolve(const fs::path& path) {
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) {
        return path;
    }
    if (!fs::is_regular_file(status)) {
        throw FileError(path.string() + ": not written: it is not a regular file");
    }
    return fs::canonical(path);
}

}  // namespace

std::vector<std::uint8_t> readWholeFile(const fs::path& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0) {
        fail(path, "cannot be opened");
    }
    std::vector<std::uint8_t> bytes;
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
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + count);
    }
}

void writeWholeFile(const fs::path& path, std::span<const std::uint8_t> bytes, Existing existing) {
    const auto target = resolve(path);
    if (existing == Existing::keep && fs::exists(target)) {
        fail(path, "not written", EEXIST);
    }
    TemporaryFile file(target);
    file.write(bytes);
    file.finish(modeFor(target));
    if (existing == Existing::keep) {
        file.becomeTarget();
    } else {
        file.replaceTarget();
    }
}

}  // namespace quillo
