// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include <juce_core/juce_core.h>

namespace quillo {

/// A text of a card as it is searched: the value of a field, under its caption and by itself.
class SearchedText {
public:
    /// `word` is how the value is said without its caption: "channel 2". A name has no caption.
    SearchedText(const juce::String& caption, const juce::String& value, const juce::String& word);

    /// Whether the text holds this, which is normalised. A number is found as a whole: 2 is not in 127. Of a
    /// caption alone nothing is found.
    [[nodiscard]] bool holds(const juce::String& sought) const;
    /// Whether the value says a number behind this word, as "channel 2" does behind "channel".
    [[nodiscard]] bool numbers(const juce::String& word) const;

private:
    juce::String captioned_;
    int captionLength_;
    juce::String word_;
};

/// What is typed to find rules, whatever its case: a part of a card's texts, "channel 2", or several that all
/// stand on it, "cc sustain 127"; a number behind a word is then that of the word, where it has one. A sharp
/// is typed as #, a minus and a dash as a hyphen.
class RuleSearch {
public:
    RuleSearch() = default;
    explicit RuleSearch(const juce::String& typed);

    /// Nothing is looked for.
    [[nodiscard]] bool isEmpty() const { return sought_.isEmpty(); }

    /// The positions of the texts that hold what is looked for, or a part of it; nothing for a card that does
    /// not have all of it.
    [[nodiscard]] std::optional<std::set<std::size_t>> find(const std::vector<SearchedText>& card) const;

private:
    juce::String sought_;
    juce::StringArray terms_;
};

}  // namespace quillo
