// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/StateChunk.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillo {

namespace {

using Bytes = std::span<const std::uint8_t>;
using namespace std::string_view_literals;

constexpr auto mark = "JUCEPrivateData"sv;
constexpr std::size_t zeroSize = 8;
constexpr std::size_t lengthSize = 8;

/// JUCE's tree of values: its type, one property, that one's name, its length and kind, and no children.
constexpr std::array bypassData{"JUCEPrivateData\0\1\1Bypass\0\1\1\2\0"sv,
                                "JUCEPrivateData\0\1\1Bypass\0\1\1\3\0"sv};

bool equal(Bytes bytes, std::string_view letters) {
    return std::ranges::equal(bytes, letters, {}, {},
                              [](char letter) { return static_cast<std::uint8_t>(letter); });
}

std::uint64_t littleEndian(Bytes bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        value = (value << 8U) | bytes[i - 1];
    }
    return value;
}

}  // namespace

StateChunk StateChunk::of(Bytes bytes) {
    if (bytes.size() < lengthSize + mark.size() || !equal(bytes.last(mark.size()), mark)) {
        return {bytes, {}};
    }
    const auto before = bytes.first(bytes.size() - mark.size() - lengthSize);
    const auto length = littleEndian(bytes.subspan(before.size(), lengthSize));
    if (before.size() < zeroSize || length > before.size() - zeroSize) {
        return {bytes, {}};
    }
    const auto data = before.last(static_cast<std::size_t>(length));
    const auto document = before.first(before.size() - data.size() - zeroSize);
    const bool isBypass =
        std::ranges::any_of(bypassData, [data](std::string_view known) { return equal(data, known); });
    return {document, isBypass ? bytes.subspan(document.size()) : Bytes()};
}

}  // namespace quillo
