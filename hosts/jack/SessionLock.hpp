// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>

#include "platform/Descriptor.hpp"

namespace quillo {

/// Says that a session belongs to this program, for as long as it lives; the system takes it back from one
/// that was killed. [main]
class SessionLock {
public:
    /// Nothing when another program has it. On file systems that know no locks everybody gets one. Throws
    /// `FileError` when the file cannot be made.
    [[nodiscard]] static std::optional<SessionLock> tryTake(const std::filesystem::path& file);

private:
    explicit SessionLock(Descriptor file) : file_(std::move(file)) {}

    Descriptor file_;
};

}  // namespace quillo
