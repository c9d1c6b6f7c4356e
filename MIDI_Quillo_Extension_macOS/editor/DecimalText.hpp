// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// The unsigned decimal number that is the whole text; nothing for an empty text, for any other character
/// than a digit, and for a number above `limit`.
[[nodiscard]] std::optional<std::uint64_t> parseUnsignedDecimal(std::string_view text, std::uint64_t limit);

/// The decimal number, with a leading sign or without, that is the whole text; nothing when there is no such
/// number or when it exceeds 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseSignedDecimal(std::string_view text);

/// The number with a comma between its thousands: "1,204".
[[nodiscard]] std::string withCommas(std::uint64_t number);

}  // namespace quillo
