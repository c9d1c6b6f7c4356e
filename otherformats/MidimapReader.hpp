// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "otherformats/Mapping.hpp"

namespace quillo {

/// Whether the first line of meaning is "midimap v1".
[[nodiscard]] bool isMidimap(std::string_view text);

/// Reads a midimap.lv2 configuration. Rules bear the text of the comment that stands above them. Throws
/// an `OtherFormatError`.
[[nodiscard]] MappingFile readMidimap(std::string_view text);

}  // namespace quillo
