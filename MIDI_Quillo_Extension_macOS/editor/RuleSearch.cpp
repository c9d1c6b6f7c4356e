// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleSearch.hpp"

namespace quillo {

namespace {

constexpr juce::juce_wchar sharp = 0x266F;
constexpr juce::juce_wchar enDash = 0x2013;
constexpr juce::juce_wchar minus = 0x2212;

juce::String normalised(const juce::String& text) {
    return text.replaceCharacter(sharp, '#')
        .replaceCharacter(enDash, '-')
        .replaceCharacter(minus, '-')
        .toLowerCase()
        .replace(" - ", "-")
        .trim();
}

bool isDigit(juce::juce_wchar character) {
    return juce::CharacterFunctions::isDigit(character);
}

/// Where `sought` stands in `text` as a whole number, if it begins or ends with one; and reaches beyond a
/// beginning of this length.
bool holdsWhole(const juce::String& text, const juce::String& sought, int beginning) {
    const auto length = sought.length();
    for (auto at = text.indexOf(sought); at >= 0; at = text.indexOf(at + 1, sought)) {
        const bool beginsWithin = isDigit(sought[0]) && at > 0 && isDigit(text[at - 1]);
        const bool endsWithin = isDigit(sought[length - 1]) && isDigit(text[at + length]);
        if (!beginsWithin && !endsWithin && at + length > beginning) {
            return true;
        }
    }
    return false;
}

}  // namespace

SearchedText::SearchedText(const juce::String& caption, const juce::String& value, const juce::String& word)
    : captioned_(normalised(caption + " " + value)),
      captionLength_(caption.length()),
      word_(normalised(word)) {}

bool SearchedText::holds(const juce::String& sought) const {
    return holdsWhole(captioned_, sought, captionLength_) || holdsWhole(word_, sought, 0);
}

bool SearchedText::numbers(const juce::String& word) const {
    const auto at = word_.indexOf(word + " ");
    return at >= 0 && isDigit(word_[at + word.length() + 1]);
}

RuleSearch::RuleSearch(const juce::String& typed)
    : sought_(normalised(typed)), terms_(juce::StringArray::fromTokens(sought_, " ,", "")) {
    terms_.removeEmptyStrings();
}

std::optional<std::set<std::size_t>> RuleSearch::find(const std::vector<SearchedText>& card) const {
    const auto holding = [&card](const juce::String& sought, const juce::String& number = {}) {
        std::set<std::size_t> positions;
        for (std::size_t position = 0; position < card.size(); ++position) {
            const bool isAnother = isDigit(number[0]) && card[position].numbers(sought);
            if (card[position].holds(sought) && !isAnother) {
                positions.insert(position);
            }
        }
        return positions;
    };
    auto found = holding(sought_);
    if (!found.empty()) {
        return found;
    }
    for (int term = 0; term < terms_.size(); ++term) {
        auto holders = holding(terms_[term], terms_[term + 1]);
        if (holders.empty()) {
            return std::nullopt;
        }
        found.merge(holders);
    }
    return found;
}

}  // namespace quillo
