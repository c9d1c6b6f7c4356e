// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

#include <nlohmann/json.hpp>

#include "platform/QuotedText.hpp"
#include "rules/RuleShelf.hpp"
#include "words/PlainWords.hpp"

namespace quillo {

/// What the verbs say to scripts: an object whose keys keep their order.
using JSONAnswer = nlohmann::ordered_json;

/// The answer in one line with its end, harmless to a terminal. A byte of a path or a name that is not UTF-8
/// is replaced by U+FFFD.
[[nodiscard]] inline std::string jsonText(const JSONAnswer& answer) {
    return escaped(answer.dump(-1, ' ', false, JSONAnswer::error_handler_t::replace)) + '\n';
}

/// A rule as answers have it: its number, from 1 on, and its name.
[[nodiscard]] inline JSONAnswer jsonOfRule(std::size_t position, const std::string& name) {
    return {{"number", position + 1}, {"name", name}};
}

/// Rules that are switched off, each with the number of rules before it.
[[nodiscard]] inline JSONAnswer jsonOfShelf(const RuleShelf& shelf) {
    auto answer = JSONAnswer::array();
    for (const auto& [place, rule] : shelf) {
        answer.push_back({{"behindRule", place}, {"name", rule.name}, {"words", inPlainWords(rule)}});
    }
    return answer;
}

}  // namespace quillo
