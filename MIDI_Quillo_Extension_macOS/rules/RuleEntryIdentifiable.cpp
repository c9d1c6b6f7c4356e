// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleEntryIdentifiable.hpp"

#include <cstddef>
#include <utility>

#include "rules/RuleLabel.hpp"

namespace quillo {

RuleEntryIdentifiable elementFromRule(const Rule& rule) {
    RuleEntryIdentifiable element;
    element.rule = entryFromRule(rule);
    if (!(ruleFromEntry(element.rule).output.message == rule.output.message)) {
        element.loadedMessage = rule.output.message;
    }
    return element;
}

std::vector<RuleEntryIdentifiable> elementsFrom(const std::vector<Rule>& rules, const RuleShelf& shelf) {
    std::vector<RuleEntryIdentifiable> elements;
    elements.reserve(rules.size() + shelf.size());
    visitInOrder(rules, shelf, [&elements](const Rule& rule, bool isOff) {
        elements.push_back(elementFromRule(rule));
        elements.back().off = isOff;
    });
    return elements;
}

std::optional<std::string> whyNotInEditor(const std::vector<Rule>& rules, const RuleShelf& shelf) {
    std::optional<std::string> why;
    std::size_t position = 0;
    visitInOrder(rules, shelf, [&](const Rule& rule, bool /*isOff*/) {
        if (const auto reason = why ? std::nullopt : whyNoEntry(rule)) {
            why = ruleLabel(position, rule.name) + " cannot be edited: " + *reason;
        }
        ++position;
    });
    return why;
}

Rule ruleFromElement(const RuleEntryIdentifiable& element) {
    auto rule = ruleFromEntry(element.rule);
    if (element.loadedMessage) {
        rule.output.message = *element.loadedMessage;
    }
    return rule;
}

void editElement(RuleEntryIdentifiable& element, RuleEntry entry) {
    const auto message = ruleFromEntry(entry).output.message;
    if (!(message == ruleFromEntry(element.rule).output.message)) {
        element.loadedMessage.reset();
    }
    element.rule = std::move(entry);
}

std::optional<std::string> noticeBeforeEditing(const std::vector<RuleEntryIdentifiable>& elements,
                                               std::size_t first) {
    constexpr std::size_t greatestCount = 5;
    std::string notice;
    std::size_t count = 0;
    for (std::size_t position = 0; position < elements.size(); ++position) {
        const auto rule = ruleFromElement(elements[position]);
        const auto change = whatEditingChanges(rule);
        if (change && ++count <= greatestCount) {
            notice += ruleLabel(first + position, rule.name) +
                      " runs as it was loaded. Editing its message changes more than you see: " + *change +
                      ".\n";
        }
    }
    if (count > greatestCount) {
        notice += "The same holds for " + std::to_string(count - greatestCount) + " more.\n";
    }
    return count > 0 ? std::optional(notice.substr(0, notice.size() - 1)) : std::nullopt;
}

}  // namespace quillo
