// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/QuotedName.hpp"

#include <algorithm>
#include <sstream>

namespace quillo {

namespace {

/// In UTF-8 every character begins with a byte that is none of those that go on.
bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
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

std::string quotedName(std::string_view name) {
    std::ostringstream text;
    text << '"' << std::hex;
    for (const auto character : name) {
        if (character == '"' || character == '\\') {
            text << '\\' << character;
        } else if (character == '\n') {
            text << "\\n";
        } else if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) {
            text << (static_cast<unsigned>(character) < 0x10 ? "\\u000" : "\\u00")
                 << static_cast<unsigned>(character);
        } else {
            text << character;
        }
    }
    text << '"';
    return text.str();
}

std::string quotedName(std::string_view name, std::size_t most) {
    const auto whole = quotedName(name);
    return characterCount(whole) <= most ? whole : beginning(whole, most - 2) + "…\"";
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

}  // namespace quillo
