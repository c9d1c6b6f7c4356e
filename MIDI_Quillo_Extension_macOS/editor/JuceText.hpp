// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include <juce_core/juce_core.h>

namespace quillo {

/// A UTF-8 text as JUCE has it.
[[nodiscard]] inline juce::String juceText(std::string_view utf8) {
    return juce::String::fromUTF8(utf8.data(), static_cast<int>(utf8.size()));
}

}  // namespace quillo
