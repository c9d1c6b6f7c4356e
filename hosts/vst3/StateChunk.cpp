// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/StateChunk.hpp"

#include <algorithm>
#include <string_view>

namespace quillo {

namespace {

constexpr std::string_view mark = "JUCEPrivateData";
constexpr std::size_t lengthSize = 8;
constexpr std::size_t zeroSize = 8;

std::uint64_t littleEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        value = (value << 8U) | bytes[i - 1];
    }
    return value;
}

}  // namespace

bool isStateChunk(std::span<const std::uint8_t> chunk) {
    if (chunk.size() < lengthSize + mark.size() ||
        !std::ranges::equal(chunk.last(mark.size()), mark, {}, {},
                            [](char letter) { return static_cast<std::uint8_t>(letter); })) {
        return true;
    }
    const auto before = chunk.first(chunk.size() - mark.size() - lengthSize);
    const auto length = littleEndian(chunk.subspan(before.size(), lengthSize));
    return before.size() >= zeroSize && length <= before.size() - zeroSize;
}

}  // namespace quillo
