// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleRun.hpp"

#include "rules/RuleEntry.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t greatestDataByte = 127;

/// The field that a trigger compares with the value; null for one without.
TriggerValueV2* comparedField(RuleTriggerEntry& trigger) {
    switch (trigger.type) {
    case TriggerEntryType::NoteOn:
    case TriggerEntryType::NoteOff: return &trigger.note;
    case TriggerEntryType::ControlChange: return &trigger.controllerValue;
    case TriggerEntryType::ProgramChange: return &trigger.program;
    default: return nullptr;
    }
}

/// The field of a message that may rise; null for one without.
GenericByteV2* risingField(RuleOutputEntry& output) {
    switch (output.type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff: return &output.note;
    case OutputEntryType::ControlChange: return &output.controllerValue;
    case OutputEntryType::ProgramChange: return &output.program;
    default: return nullptr;
    }
}

/// The data byte in a field; nothing where there is none, or any, or one that is copied.
template <class Field>
std::optional<std::uint8_t> dataByte(const Field* field) {
    const auto* exact = field == nullptr ? nullptr : field->template getIf<typename Field::Value>();
    return exact == nullptr || exact->value > greatestDataByte ? std::nullopt : std::optional(exact->value);
}

/// False, and nothing changed, where no higher data byte can be.
template <class Field>
bool tryRaise(Field* field) {
    const auto value = dataByte(field);
    if (!value || *value == greatestDataByte) {
        return false;
    }
    *field = typename Field::Value{static_cast<std::uint8_t>(*value + 1)};
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
    auto entry = wholeEntry(rule);
    if (!entry || entry->trigger.passThrough == PassThroughV2::EatNonMatching) {
        return std::nullopt;
    }
    return dataByte(comparedField(entry->trigger));
}

std::optional<Rule> nextInRun(const Rule& rule, bool rises) {
    if (!runValue(rule)) {
        return std::nullopt;
    }
    auto entry = entryFromRule(rule);
    if (!tryRaise(comparedField(entry.trigger)) || (rises && !tryRaise(risingField(entry.output)))) {
        return std::nullopt;
    }
    return ruleFromEntry(entry);
}

}  // namespace quillo
