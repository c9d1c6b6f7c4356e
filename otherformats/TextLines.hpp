// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// A line of a text without its end and the blanks around it.
struct TextLine {
    std::size_t number = 0;  ///< counted from 1
    std::string text;
};

inline constexpr std::string_view blanks = " \t\r";

/// The lines of a text, which stays the caller's, one after the other. A byte-order mark is left out.
class TextLines {
public:
    explicit TextLines(std::string_view text) : rest_(text) {
        constexpr std::string_view mark = "\xEF\xBB\xBF";
        rest_.remove_prefix(rest_.starts_with(mark) ? mark.size() : 0);
    }

    /// Nothing behind the last line.
    [[nodiscard]] std::optional<TextLine> next() {
        if (rest_.empty()) {
            return std::nullopt;
        }
        const auto end = std::min(rest_.find('\n'), rest_.size());
        auto line = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        line = line.substr(0, line.find_last_not_of(blanks) + 1);
        line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
        return TextLine{++number_, std::string(line)};
    }

private:
    std::string_view rest_;
    std::size_t number_ = 0;
};

}  // namespace quillo
