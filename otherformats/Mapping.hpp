// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "otherformats/OtherFormat.hpp"

namespace quillo {

/// A byte that comes in matches when its bits under the mask are the value.
struct ByteFilter {
    std::uint8_t value = 0;
    std::uint8_t mask = 0;

    [[nodiscard]] bool matches(unsigned byte) const { return (byte & mask) == value; }
};

/// A byte that goes out: that of a place in the incoming message under a mask, and the bits of a value.
struct ByteMaker {
    std::size_t from = 0;  ///< 0 the status byte, 1 and 2 the data bytes
    std::uint8_t mask = 0;
    std::uint8_t value = 0;

    [[nodiscard]] std::uint8_t make(unsigned byte) const {
        return static_cast<std::uint8_t>((byte & mask) | value);
    }
};

/// What a line of another tool makes of one incoming message.
struct Mapping {
    std::size_t line = 0;  ///< counted from 1
    std::string name;
    std::array<ByteFilter, 3> filter{};
    std::size_t length = 3;  ///< of the messages that it can match, with the status byte
    std::vector<std::vector<ByteMaker>> messages;  ///< each from its status byte on
    bool isLast = false;                           ///< what matches comes to no later mapping
    bool isOff = false;
};

/// A line that cannot be a mapping.
struct Omission {
    std::size_t line = 0;
    std::string reason;
};

/// What a file says. An incoming message that a mapping matches does not pass itself.
struct MappingFile {
    std::vector<Mapping> mappings;
    std::vector<Omission> omissions;
    bool passesUnmatched = true;
};

/// Whether the first section is "[Project]".
[[nodiscard]] bool isBmtp(std::string_view text);

/// Reads a `.bmtp` project: translators of plain MIDI messages in hexadecimal, with variables for whole
/// bytes. What is no such translator is an omission. Throws an `OtherFormatError`.
[[nodiscard]] MappingFile readBmtp(std::string_view text);

/// Whether the first line of meaning is "midimap v1".
[[nodiscard]] bool isMidimap(std::string_view text);

/// Reads a midimap.lv2 configuration. Rules bear the text of the comment that stands above them. Throws
/// an `OtherFormatError`.
[[nodiscard]] MappingFile readMidimap(std::string_view text);

/// The rules that do what the mappings do, one after the other. Where a mapping is for several kinds of
/// messages, or calculates with a byte, it becomes several rules; consecutive values make runs.
[[nodiscard]] OtherRules rulesFrom(const MappingFile& file);

}  // namespace quillo
