// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>

namespace quillo {

/// The file that a verb writes, whole or not at all. An existing one is replaced only by force: the
/// constructor refuses early, before any work is done for nothing, and `write` once more. Both throw a
/// `CommandFailure` with `exitCannotCreate`. With a stream "-" is that stream, whose owner flushes it.
class OutputFile {
public:
    OutputFile(std::string path, bool force, std::ostream* standardOutput = nullptr);

    void write(std::span<const std::uint8_t> bytes) const;

private:
    std::string path_;
    bool force_;
    std::ostream* stream_;  ///< null for a file
};

}  // namespace quillo
