// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "otherformats/Mapping.hpp"
#include "otherformats/OtherFormat.hpp"

namespace quillo {

/// The rules that do what the mappings do, one after the other. Where a mapping is for several kinds of
/// messages, or calculates with a byte, it becomes several rules; consecutive values make runs.
[[nodiscard]] OtherRules rulesFrom(const MappingFile& file);

}  // namespace quillo
