// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "platform/QuotedText.hpp"

namespace quillo {

/// The letters of ASCII in lower case, in any locale.
[[nodiscard]] inline std::string inLowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

/// What stands between the blanks.
[[nodiscard]] inline std::vector<std::string> splitAtBlanks(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) {
        words.push_back(word);
    }
    return words;
}

/// "1 rule", "2 rules".
[[nodiscard]] inline std::string countWords(std::uint64_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

/// The text with blanks behind it, up to so many characters.
[[nodiscard]] inline std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width, characterCount(text)), ' ');
}

}  // namespace quillo
