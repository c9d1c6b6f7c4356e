// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QuotedText.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace quillo {

namespace {

struct Character {
    char32_t code;
    std::size_t length;  ///< in bytes
};

constexpr unsigned byteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

/// In UTF-8 every character begins with a byte that is not a continuation byte.
bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// Not overlong, no half of a surrogate pair, and within Unicode.
bool isShortestForm(Character character) {
    constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character.code >= 0xD800 && character.code <= 0xDFFF;
    return character.code >= least[character.length] && character.code <= 0x10FFFF && !isSurrogate;
}

/// The character that a text begins with; nothing where the text is not UTF-8.
std::optional<Character> firstCharacter(std::string_view text) {
    const auto lead = byteAt(text, 0);
    if (lead < 0x80) {
        return Character{lead, 1};
    }
    Character character{0, lead >= 0xF0 ? 4U : lead >= 0xE0 ? 3U : 2U};
    if (lead < 0xC0 || lead >= 0xF8 || text.size() < character.length) {
        return std::nullopt;
    }
    character.code = lead & (0x7FU >> character.length);
    for (std::size_t index = 1; index < character.length; ++index) {
        if (beginsCharacter(text[index])) {
            return std::nullopt;
        }
        character.code = character.code << 6U | (byteAt(text, index) & 0x3FU);
    }
    return isShortestForm(character) ? std::optional(character) : std::nullopt;
}

bool mustBeEscaped(char32_t code) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    constexpr std::array ranges{
        Range{0x00, 0x1F},      // C0 controls
        Range{0x7F, 0x9F},      // DEL and C1 controls
        Range{0x061C, 0x061C},  // Arabic letter mark
        Range{0x200E, 0x200F},  // left-to-right and right-to-left mark
        Range{0x2028, 0x202E},  // line and paragraph separator, embeddings and overrides
        Range{0x2066, 0x206F},  // isolates and deprecated format characters
    };
    return std::ranges::any_of(ranges,
                               [code](Range range) { return code >= range.first && code <= range.last; });
}

/// The number's last `count` hexadecimal digits.
std::string digitsOf(std::uint32_t number, unsigned count) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    while (count-- > 0) {
        text += digits[number >> (4U * count) & 0x0FU];
    }
    return text;
}

std::string escapeOf(char32_t code) {
    return code == '\n' ? "\\n" : "\\u" + digitsOf(code, 4);
}

/// With a backslash before each of `marks`.
std::string escapedWith(std::string_view text, std::string_view marks) {
    std::string result;
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        const auto length = character ? character->length : 1;
        if (!character) {
            result += "\\x" + digitsOf(byteAt(text, 0), 2);
        } else if (mustBeEscaped(character->code)) {
            result += escapeOf(character->code);
        } else {
            result.append(marks.find(text.front()) != std::string_view::npos ? "\\" : "");
            result.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    return result;
}

/// The first characters of a text, or all of it.
std::string beginning(const std::string& text, std::size_t count) {
    auto end = text.begin();
    for (std::size_t begun = 0; end != text.end(); ++end) {
        begun += beginsCharacter(*end) ? 1U : 0U;
        if (begun > count) {
            break;
        }
    }
    return {text.begin(), end};
}

}  // namespace

std::string escaped(std::string_view text) {
    return escapedWith(text, {});
}

std::string escapedLines(std::string_view text) {
    std::string result;
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        result += escaped(text.substr(0, end)) + '\n';
        text.remove_prefix(end + 1);
    }
    return result + escaped(text);
}

std::string inQuotes(std::string_view text) {
    return '"' + escapedWith(text, "\"\\") + '"';
}

std::string inQuotes(std::string_view text, std::size_t most) {
    const auto whole = inQuotes(text);
    return characterCount(whole) <= most ? whole : beginning(whole, most - 2) + "…\"";
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

}  // namespace quillo
