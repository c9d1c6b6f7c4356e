// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardWords.hpp"

#include <algorithm>
#include <tuple>

#include "editor/JuceText.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

juce::String channelWord(const juce::String& text) {
    if (text == juceText(anyLabel)) {
        return "any channel";
    }
    return text == juceText(fromTriggerLabel) ? juce::String() : "channel " + text;
}

/// What says no more than a value's type does is left out: any value, a note as it came, the policy of most
/// rules, the first bank.
juce::String wordOf(const FieldPlan& field) {
    const auto& [caption, text] = std::tie(field.caption, field.text);
    const bool isAny = text == juceText(anyLabel);
    const bool isCopied = text == juceText(fromTriggerLabel);
    if (caption == juceText(channelCaption)) {
        return channelWord(text);
    }
    if (caption == juceText(delayCaption)) {
        return text == "0" ? juce::String() : "+ " + text + " ms";
    }
    if (caption == "Bank") {
        return text == "0" ? juce::String() : "bank " + text;
    }
    if (caption == "Note" || caption == "Velocity") {
        return isAny ? juce::String("any") : isCopied ? juce::String() : text;
    }
    if (caption == "Incoming") {
        return text == juceText(passThroughMenu().front().label) ? juce::String() : text;
    }
    if (caption == juceText(valueCaption)) {
        return isAny ? juce::String() : text;
    }
    return isAny ? juce::String("any") : text;
}

}  // namespace

std::vector<CardWord> wordsOf(const FieldPlans& fields) {
    std::vector<CardWord> words;
    for (const auto& field : fields) {
        words.push_back({wordOf(field), field.colors.primary, words.size()});
    }
    const auto isValue = [&](const CardWord& word) {
        const auto& caption = fields[word.field].caption;
        return caption != "Incoming" && caption != juceText(delayCaption);
    };
    const auto values = std::find_if_not(words.begin(), words.end(), isValue);
    const auto channel = std::find_if(words.begin(), values, [&](const CardWord& word) {
        return fields[word.field].caption == juceText(channelCaption);
    });
    if (channel != values) {
        std::rotate(channel, channel + 1, values);
    }
    return words;
}

}  // namespace quillo
