// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

/// A line of a text without its end and the blanks around it.
struct TextLine {
    std::size_t number = 0;  ///< counted from 1
    std::string text;
};

inline constexpr std::string_view blanks = " \t\r";

/// A text may begin with a byte-order mark.
[[nodiscard]] inline std::vector<TextLine> linesOf(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(mark) ? mark.size() : 0);
    std::istringstream in{std::string(text)};
    std::vector<TextLine> lines;
    for (std::string line; std::getline(in, line);) {
        line.erase(line.find_last_not_of(blanks) + 1);
        line.erase(0, line.find_first_not_of(blanks));
        lines.push_back({lines.size() + 1, std::move(line)});
    }
    return lines;
}

}  // namespace quillo
