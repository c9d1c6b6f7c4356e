// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

namespace quillo::fixture {

using Bytes = std::vector<std::uint8_t>;

/// Bytes written as hexadecimal numbers with spaces between them.
inline Bytes hex(const std::string& text) {
    std::istringstream words(text);
    words >> std::hex;
    Bytes bytes;
    for (unsigned byte = 0; words >> byte;) {
        bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    return bytes;
}

inline Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes whole;
    for (const auto& part : parts) {
        whole.insert(whole.end(), part.begin(), part.end());
    }
    return whole;
}

/// A chunk with its length, at most 255 bytes.
inline Bytes chunk(const std::string& type, const std::string& body) {
    const auto bytes = hex(body);
    return joined({{type.begin(), type.end()}, {0, 0, 0, static_cast<std::uint8_t>(bytes.size())}, bytes});
}

inline Bytes track(const std::string& events) {
    return chunk("MTrk", events);
}

/// A file of format 0 with 480 (01 e0) ticks in a quarter note and these events, End of Track included.
inline Bytes oneTrackFile(const std::string& events) {
    return joined({chunk("MThd", "00 00 00 01 01 e0"), track(events)});
}

/// Where the first event of `oneTrackFile` begins: its delta time.
inline constexpr std::size_t firstEventPosition = 22;

}  // namespace quillo::fixture
