// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "otherformats/Mapping.hpp"

namespace quillo {

/// Whether the first section is "[Project]".
[[nodiscard]] bool isBmtp(std::string_view text);

/// Reads a `.bmtp` project: translators of plain MIDI messages in hexadecimal, with variables for whole
/// bytes. What is no such translator is an omission. Throws an `OtherFormatError`.
[[nodiscard]] MappingFile readBmtp(std::string_view text);

}  // namespace quillo
