// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace quillo {

enum class HexCase { lower, upper };

/// Each byte as two hexadecimal digits, parted by single blanks: "90 3c 64".
[[nodiscard]] std::string hexText(std::span<const std::uint8_t> bytes, HexCase digitCase);

}  // namespace quillo
