// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace quillo {

/// Reads a file, or one chunk of it, from front to back. Every read that would run over the end throws a
/// `MIDIFileError` that names the byte where the missing thing begins, and leaves the cursor where it was.
///
///     ByteCursor file(bytes, "the file");
///     ByteCursor track = file.part(file.bigEndian32("the track's length"), "the track");
class ByteCursor {
public:
    /// `bytes` must outlive the cursor. `whole` says in errors what ends, `position` is where in the file
    /// `bytes` begins.
    ByteCursor(std::span<const std::uint8_t> bytes, std::string whole, std::size_t position = 0);

    [[nodiscard]] bool atEnd() const { return bytes_.empty(); }
    [[nodiscard]] std::size_t remaining() const { return bytes_.size(); }

    /// The next byte's position in the file.
    [[nodiscard]] std::size_t position() const { return position_; }

    /// The reads. `what` names the thing in an error: "the track ends in the middle of a meta event".
    [[nodiscard]] std::uint8_t peek(const char* what) const;
    std::uint8_t byte(const char* what);
    std::uint16_t bigEndian16(const char* what);
    std::uint32_t bigEndian32(const char* what);
    std::span<const std::uint8_t> take(std::size_t count, const char* what);

    /// A number of one to four bytes with seven bits in each, most significant first.
    std::uint32_t variableLength(const char* what);

    /// A cursor over the next `count` bytes, named `what`, which this one skips.
    ByteCursor part(std::size_t count, const char* what);

private:
    void require(std::size_t count, const char* what) const;

    std::span<const std::uint8_t> bytes_;
    std::string whole_;
    std::size_t position_;
};

}  // namespace quillo
