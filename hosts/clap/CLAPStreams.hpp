// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo {

/// More than this is no state document, but a stream that never ends.
inline constexpr std::size_t longestStream = std::size_t{1} << 28U;

/// All bytes up to the stream's end, in whatever pieces it hands them over. Nothing when it fails, is longer than
/// `longestStream`, or is null.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> readAll(const clap_istream_t* stream);

/// Writes all bytes, in whatever pieces the stream takes them. False when it fails, takes no more, or is null.
[[nodiscard]] bool writeAll(const clap_ostream_t* stream, std::span<const std::uint8_t> bytes);

}  // namespace quillo
