// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/RunWords.hpp"

#include <vector>

#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "rules/MIDIVocabulary.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"
#include "words/PlainWords.hpp"

namespace quillo {

namespace {

std::string parts(const Rule& rule) {
    return inPlainWords(rule.trigger) + ", " + inPlainWords(rule.output, rule.trigger) + ".";
}

std::string joined(std::span<const std::string> words) {
    std::string text;
    for (const auto& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/// "notes C1 to B1", "values 64 to 127" or "programs 0 to 7".
std::string rangeWords(const Rule& first, const Rule& last) {
    const auto from = runValue(first).value();
    const auto to = runValue(last).value();
    switch (entryFromRule(first).trigger.type) {
    case TriggerEntryType::ControlChange:
        return "values " + std::to_string(from) + " to " + std::to_string(to);
    case TriggerEntryType::ProgramChange:
        return "programs " + std::to_string(from) + " to " + std::to_string(to);
    default: return "notes " + noteName(from) + " to " + noteName(to);
    }
}

}  // namespace

std::string runInPlainWords(std::span<const Rule> run) {
    const auto& first = run.front();
    if (run.size() == 1) {
        return inPlainWords(first);
    }
    return inQuotes(first.name) + ", " + rangeWords(first, run.back()) + ", " + std::to_string(run.size()) +
           " rules: " + sentenceFromTo(parts(first), parts(run.back()));
}

std::string sentenceFromTo(const std::string& first, const std::string& last) {
    const auto from = splitAtBlanks(first);
    const auto to = splitAtBlanks(last);
    if (from.size() != to.size()) {
        return first;
    }
    std::vector<std::string> words;
    for (std::size_t i = 0; i < from.size();) {
        const auto begin = i;
        while (i < from.size() && from[i] != to[i]) {
            ++i;
        }
        if (i > begin) {
            auto range = joined(std::span(from).subspan(begin, i - begin));
            range.erase(range.find_last_not_of(',') + 1);
            words.push_back(range + " to " + joined(std::span(to).subspan(begin, i - begin)));
        } else {
            words.push_back(from[i++]);
        }
    }
    return joined(words);
}

}  // namespace quillo
