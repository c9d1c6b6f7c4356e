// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace quillo {

/// What a project keeps of the plug-in: the state document, eight zero bytes, data of JUCE's wrapper, the
/// length of these in eight bytes, and a mark. A document alone is a chunk, too.
struct StateChunk {
    /// What is no chunk is taken for a document, which says what is wrong with it.
    [[nodiscard]] static StateChunk of(std::span<const std::uint8_t> bytes);

    std::span<const std::uint8_t> document;

    /// Everything behind the document; by itself a chunk with an empty document. Empty unless the wrapper's
    /// data are exactly one of the two that say whether the plug-in is bypassed: it believes what it reads,
    /// and a damaged length or depth would end the host.
    std::span<const std::uint8_t> bypass;
};

}  // namespace quillo
