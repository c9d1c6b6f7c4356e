// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace quillo {

/// The program's icon: the files of `data/`, which the build puts into the program.

/// A PNG of 32 × 32 pixels.
[[nodiscard]] std::span<const std::uint8_t> smallIcon();
/// A PNG of 128 × 128 pixels.
[[nodiscard]] std::span<const std::uint8_t> largeIcon();

}  // namespace quillo
