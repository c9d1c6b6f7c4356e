// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionLock.hpp"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

std::optional<SessionLock> SessionLock::tryTake(const std::filesystem::path& file) {
    constexpr mode_t forTheUserAlone = 0600;
    Descriptor opened(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, forTheUserAlone));
    if (!opened.isOpen()) {
        throw FileError(escaped(file.string()) + ": cannot be made: " + std::strerror(errno));
    }
    if (::flock(opened.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        return std::nullopt;
    }
    return SessionLock(std::move(opened));
}

}  // namespace quillo
