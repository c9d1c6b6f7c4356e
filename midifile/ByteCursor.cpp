// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/ByteCursor.hpp"

#include <utility>

#include "midifile/MIDIFile.hpp"

namespace quillo {

ByteCursor::ByteCursor(std::span<const std::uint8_t> bytes, std::string whole, std::size_t position)
    : bytes_(bytes), whole_(std::move(whole)), position_(position) {}

std::uint8_t ByteCursor::peek(const char* what) const {
    require(1, what);
    return bytes_.front();
}

std::uint8_t ByteCursor::byte(const char* what) {
    return take(1, what).front();
}

std::uint16_t ByteCursor::bigEndian16(const char* what) {
    const auto bytes = take(2, what);
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

std::uint32_t ByteCursor::bigEndian32(const char* what) {
    std::uint32_t number = 0;
    for (const auto byte : take(4, what)) {
        number = number << 8 | byte;
    }
    return number;
}

std::span<const std::uint8_t> ByteCursor::take(std::size_t count, const char* what) {
    require(count, what);
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    position_ += count;
    return taken;
}

std::uint32_t ByteCursor::variableLength(const char* what) {
    constexpr std::size_t longest = 4;
    std::uint32_t number = 0;
    for (std::size_t count = 1; count <= longest; ++count) {
        require(count, what);
        const auto next = bytes_[count - 1];
        number = number << 7 | (next & 0x7Fu);
        if (next < 0x80) {
            take(count, what);
            return number;
        }
    }
    throw MIDIFileError(position_, std::string(what) + " is longer than four bytes");
}

ByteCursor ByteCursor::part(std::size_t count, const char* what) {
    const auto start = position_;
    return {take(count, what), what, start};
}

void ByteCursor::require(std::size_t count, const char* what) const {
    if (count > bytes_.size()) {
        throw MIDIFileError(position_, whole_ + " ends in the middle of " + what);
    }
}

}  // namespace quillo
