// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Data.hpp"

namespace quillo {

/// The bytes of a Base64 text in the standard alphabet, padded. Nothing for any other text: other characters
/// (white space too), missing padding, or bits behind the last byte that are not zero.
[[nodiscard]] std::optional<Data> decodeBase64(std::string_view text);

/// The text that `decodeBase64` reads back.
[[nodiscard]] std::string encodeBase64(std::span<const std::uint8_t> bytes);

}  // namespace quillo
