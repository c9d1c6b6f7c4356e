// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

/// Where the next thing begins after so many bytes: atoms are laid out in units of eight.
[[nodiscard]] constexpr std::size_t lv2Padded(std::size_t size) QUILLO_REALTIME {
    return (size + 7U) & ~std::size_t{7U};
}

/// What is left behind so many bytes and what pads them; the last ones may go without.
[[nodiscard]] inline std::span<const std::uint8_t> lv2Behind(std::span<const std::uint8_t> bytes,
                                                             std::size_t size) QUILLO_REALTIME {
    return bytes.subspan(std::min(lv2Padded(size), bytes.size()));
}

/// The value whose bytes these begin with. There must be enough.
template <class Value>
[[nodiscard]] Value lv2Value(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    Value value;
    std::memcpy(&value, bytes.data(), sizeof(Value));
    return value;
}

}  // namespace quillo
