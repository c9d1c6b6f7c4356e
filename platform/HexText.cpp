// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HexText.hpp"

#include <string_view>

namespace quillo {

std::string hexText(std::span<const std::uint8_t> bytes, HexCase digitCase) {
    const std::string_view digits = digitCase == HexCase::lower ? "0123456789abcdef" : "0123456789ABCDEF";
    std::string text;
    for (const auto byte : bytes) {
        if (!text.empty()) {
            text += ' ';
        }
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

}  // namespace quillo
