// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Base64.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillo {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t charactersPerGroup = 4;
constexpr unsigned bitsPerCharacter = 6;
constexpr unsigned bitsPerByte = 8;

/// The text without its padding; nothing when it is not whole groups.
std::optional<std::string_view> withoutPadding(std::string_view text) {
    if (text.size() % charactersPerGroup != 0) {
        return std::nullopt;
    }
    const auto padding = text.size() - std::min(text.size(), text.find_last_not_of('=') + 1);
    if (padding > 2) {
        return std::nullopt;
    }
    return text.substr(0, text.size() - padding);
}

}  // namespace

std::optional<Data> decodeBase64(std::string_view text) {
    const auto characters = withoutPadding(text);
    if (!characters) {
        return std::nullopt;
    }
    Data bytes;
    std::uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const char character : *characters) {
        const auto value = alphabet.find(character);
        if (value == std::string_view::npos) {
            return std::nullopt;
        }
        bits = (bits << bitsPerCharacter) | static_cast<std::uint32_t>(value);
        bitCount += bitsPerCharacter;
        if (bitCount >= bitsPerByte) {
            bitCount -= bitsPerByte;
            bytes.push_back(static_cast<std::uint8_t>(bits >> bitCount));
            bits &= (1U << bitCount) - 1;
        }
    }
    return bits == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string encodeBase64(std::span<const std::uint8_t> bytes) {
    std::string text;
    std::uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const auto byte : bytes) {
        bits = (bits << bitsPerByte) | byte;
        bitCount += bitsPerByte;
        for (; bitCount >= bitsPerCharacter; bitCount -= bitsPerCharacter) {
            text += alphabet[(bits >> (bitCount - bitsPerCharacter)) % alphabet.size()];
        }
    }
    if (bitCount > 0) {
        text += alphabet[(bits << (bitsPerCharacter - bitCount)) % alphabet.size()];
    }
    text.resize((text.size() + charactersPerGroup - 1) / charactersPerGroup * charactersPerGroup, '=');
    return text;
}

}  // namespace quillo
