// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace quillo {

/// A buffer of bytes, as opposed to text.
using Data = std::vector<std::uint8_t>;

}  // namespace quillo
