// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleRun.hpp"

namespace quillo {

namespace {

/// The data byte in a field; nothing where there is any, or one that is copied.
template <class Field>
std::optional<std::uint8_t> dataByte(const Field& field) {
    const auto* exact = field.template getIf<typename Field::Value>();
    return exact != nullptr && midi::isData(exact->value) ? std::optional(exact->value) : std::nullopt;
}

/// False, and nothing changed, where there is no such field and where no higher data byte can be.
template <class Part, class Field>
bool tryRaise(Part& part, Field Part::* field) {
    const auto value = field == nullptr ? std::nullopt : dataByte(part.*field);
    if (!value || *value == midi::greatestDataByte) {
        return false;
    }
    part.*field = typename Field::Value{static_cast<std::uint8_t>(*value + 1)};
    return true;
}

/// The rule as an entry, where that is all of it.
std::optional<RuleEntry> wholeEntry(const Rule& rule) {
    if (whyNoEntry(rule) || whatEditingChanges(rule)) {
        return std::nullopt;
    }
    return entryFromRule(rule);
}

RuleRun runAt(std::span<const Rule> rules, std::size_t first, bool rises) {
    RuleRun run{first, 1, rises};
    while (first + run.count < rules.size() &&
           nextInRun(rules[first + run.count - 1], rises) == rules[first + run.count]) {
        ++run.count;
    }
    return run;
}

}  // namespace

std::vector<RuleRun> runsOf(std::span<const Rule> rules) {
    std::vector<RuleRun> runs;
    for (std::size_t first = 0; first < rules.size(); first += runs.back().count) {
        const auto rising = runAt(rules, first, true);
        runs.push_back(rising.count > 1 ? rising : runAt(rules, first, false));
    }
    return runs;
}

std::optional<std::uint8_t> runValue(const Rule& rule) {
    const auto entry = wholeEntry(rule);
    if (!entry || entry->trigger.passThrough == PassThroughV2::EatNonMatching) {
        return std::nullopt;
    }
    return comparedValue(*entry);
}

std::optional<Rule> nextInRun(const Rule& rule, bool rises) {
    if (!runValue(rule)) {
        return std::nullopt;
    }
    auto entry = entryFromRule(rule);
    if (!tryRaise(entry.trigger, comparedField(entry.trigger.type)) ||
        (rises && !tryRaise(entry.output, risingField(entry.output.type)))) {
        return std::nullopt;
    }
    return ruleFromEntry(entry);
}

TriggerValueV2 RuleTriggerEntry::* comparedField(TriggerEntryType type) {
    switch (type) {
    case TriggerEntryType::NoteOn:
    case TriggerEntryType::NoteOff: return &RuleTriggerEntry::note;
    case TriggerEntryType::ControlChange: return &RuleTriggerEntry::controllerValue;
    case TriggerEntryType::ProgramChange: return &RuleTriggerEntry::program;
    default: return nullptr;
    }
}

GenericByteV2 RuleOutputEntry::* risingField(OutputEntryType type) {
    switch (type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff: return &RuleOutputEntry::note;
    case OutputEntryType::ControlChange: return &RuleOutputEntry::controllerValue;
    case OutputEntryType::ProgramChange: return &RuleOutputEntry::program;
    default: return nullptr;
    }
}

std::optional<std::uint8_t> comparedValue(const RuleEntry& entry) {
    const auto field = comparedField(entry.trigger.type);
    return field == nullptr ? std::nullopt : dataByte(entry.trigger.*field);
}

std::optional<std::uint8_t> sentValue(const RuleEntry& entry) {
    const auto field = risingField(entry.output.type);
    return field == nullptr ? std::nullopt : dataByte(entry.output.*field);
}

/// Most rules that follow each other do not go on with each other's values: only the others are compared
/// whole.
RunLink linkBetween(const RuleEntry& above, const RuleEntry& below) {
    const auto from = comparedValue(above);
    const auto to = comparedValue(below);
    if (!from || !to || *to != *from + 1) {
        return RunLink::none;
    }
    const auto first = ruleFromEntry(above);
    const auto second = ruleFromEntry(below);
    if (nextInRun(first, false) == second) {
        return RunLink::same;
    }
    return nextInRun(first, true) == second ? RunLink::rising : RunLink::none;
}

}  // namespace quillo
