// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace quillo {

/// Whether JUCE's wrapper can take a project's chunk apart. What it writes is the state document, eight zero
/// bytes, its own data, the length of these in eight bytes, and a mark; a document alone is a chunk too. The
/// wrapper believes the length: a damaged one would make it read beyond the chunk.
[[nodiscard]] bool isStateChunk(std::span<const std::uint8_t> chunk);

}  // namespace quillo
