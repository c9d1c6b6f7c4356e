// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunText.hpp"

#include <algorithm>
#include <cstdlib>

#include "editor/DecimalText.hpp"
#include "midi/Status.hpp"
#include "rules/MIDIVocabulary.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {

namespace {

constexpr std::string_view sharp = "♯";
constexpr std::string_view minus = "−";
constexpr std::string_view dash = "–";

std::string replaced(std::string text, std::string_view sign, char by) {
    for (auto at = text.find(sign); at != std::string::npos; at = text.find(sign)) {
        text.replace(at, sign.size(), 1, by);
    }
    return text;
}

/// Signs as they are on a keyboard, small letters, and no blanks.
std::string plain(std::string_view text) {
    auto typed = replaced(replaced(replaced(std::string(text), sharp, '#'), minus, '-'), dash, '-');
    std::erase(typed, ' ');
    std::ranges::transform(typed, typed.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return typed;
}

std::optional<std::uint8_t> plainValue(TriggerEntryType type, const std::string& text) {
    if (const auto number = parseUnsignedDecimal(text, midi::greatestDataByte)) {
        return static_cast<std::uint8_t>(*number);
    }
    for (int note = 0; waitsForNotes(type) && note <= midi::greatestDataByte; ++note) {
        if (plain(noteName(static_cast<std::uint8_t>(note))) == text) {
            return static_cast<std::uint8_t>(note);
        }
    }
    return std::nullopt;
}

}  // namespace

bool waitsForNotes(TriggerEntryType type) {
    return type == TriggerEntryType::NoteOn || type == TriggerEntryType::NoteOff;
}

std::string valueText(TriggerEntryType type, std::uint8_t value) {
    return waitsForNotes(type) ? noteName(value) : std::to_string(value);
}

std::string rangeText(const RuleEntry& first, std::size_t count) {
    const auto from = comparedValue(first).value_or(0);
    const auto to = static_cast<std::uint8_t>(from + count - 1);
    return valueText(first.trigger.type, from) + " – " + valueText(first.trigger.type, to);
}

std::string offsetText(int offset) {
    return std::string(fromTriggerLabel) + (offset < 0 ? " − " : " + ") + std::to_string(std::abs(offset));
}

std::optional<std::uint8_t> typedValue(TriggerEntryType type, std::string_view text) {
    return plainValue(type, plain(text));
}

/// A note may have a dash of its own: "c-2-b-2".
std::optional<std::pair<std::uint8_t, std::uint8_t>> typedRange(TriggerEntryType type,
                                                                std::string_view text) {
    const auto typed = plain(text);
    for (auto at = typed.find('-'); at != std::string::npos; at = typed.find('-', at + 1)) {
        const auto from = plainValue(type, typed.substr(0, at));
        const auto to = plainValue(type, typed.substr(at + 1));
        if (from && to) {
            return std::minmax(*from, *to);
        }
    }
    return std::nullopt;
}

std::optional<int> typedOffset(std::string_view text) {
    const auto typed = plain(text);
    if (typed.empty() || (typed.front() != '+' && typed.front() != '-')) {
        return std::nullopt;
    }
    const auto amount = plainValue(TriggerEntryType::ControlChange, typed.substr(1));
    return amount ? std::optional(typed.front() == '-' ? -*amount : *amount) : std::nullopt;
}

}  // namespace quillo
