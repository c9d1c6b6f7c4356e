// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunEdit.hpp"

#include <algorithm>
#include <utility>

#include "midi/Status.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

/// Gives each field its new value that is another one than before.
template <class Entry, class... Field>
void carry(Entry& entry, const Entry& before, const Entry& after, Field Entry::*... fields) {
    ((before.*fields == after.*fields ? void() : void(entry.*fields = after.*fields)), ...);
}

RuleEntry carried(RuleEntry entry, const RuleEntry& before, const RuleEntry& after) {
    using Trigger = RuleTriggerEntry;
    using Output = RuleOutputEntry;
    carry(entry, before, after, &RuleEntry::name);
    carry(entry.trigger, before.trigger, after.trigger, &Trigger::type, &Trigger::channel, &Trigger::note,
          &Trigger::controller, &Trigger::controllerValue, &Trigger::program, &Trigger::passThrough);
    carry(entry.output, before.output, after.output, &Output::type, &Output::channel, &Output::note,
          &Output::velocity, &Output::pitch, &Output::bank, &Output::program, &Output::pressure,
          &Output::controller, &Output::controllerValue, &Output::systemExclusive, &Output::delay);
    return entry;
}

RuleList alone(const RuleList& run, const RuleEntry& entry) {
    auto first = run.front();
    editElement(first, entry);
    return {first};
}

void waitFor(RuleEntry& entry, int value) {
    entry.trigger.*comparedField(entry.trigger.type) =
        TriggerValueV2::Value{static_cast<std::uint8_t>(value)};
}

void send(RuleEntry& entry, int value) {
    entry.output.*risingField(entry.output.type) = GenericByteV2::Value{static_cast<std::uint8_t>(value)};
}

bool isDataByte(int value) {
    return value >= 0 && value <= midi::greatestDataByte;
}

}  // namespace

int offsetOf(const RuleEntry& entry) {
    return sentValue(entry).value_or(0) - comparedValue(entry).value_or(0);
}

bool isRising(const RuleList& run) {
    return run.size() > 1 && linkBetween(run[0].rule, run[1].rule) == RunLink::rising;
}

bool canHaveRange(const RuleTriggerEntry& trigger) {
    return comparedField(trigger.type) != nullptr && trigger.passThrough != PassThroughV2::EatNonMatching;
}

RuleList edited(const RuleList& run, const RuleEntry& first) {
    const auto before = run.front().rule;
    if (comparedValue(first) != comparedValue(before)) {
        return alone(run, first);
    }
    auto rules = run;
    for (auto& element : rules) {
        editElement(element, carried(element.rule, before, first));
    }
    return rules;
}

RuleList withTriggerType(const RuleList& run, TriggerEntryType type) {
    auto rules = run;
    for (auto& element : rules) {
        auto entry = withUsableChoices(type, element.rule);
        entry.trigger.type = type;
        if (run.size() > 1 && comparedField(type) != nullptr) {
            waitFor(entry, *comparedValue(element.rule));
        }
        editElement(element, std::move(entry));
    }
    return comparedField(type) != nullptr ? rules : RuleList{rules.front()};
}

RuleList withOutputType(const RuleList& run, OutputEntryType type) {
    auto rules = run;
    for (auto& element : rules) {
        auto entry = element.rule;
        entry.output.type = type;
        editElement(element, withUsableChoices(element.rule.trigger.type, std::move(entry)));
    }
    return rules;
}

RuleList sendingZero(const RuleList& run, std::uint8_t controller) {
    auto rules = run;
    for (auto& element : rules) {
        auto entry = element.rule;
        entry.output.type = OutputEntryType::ControlChange;
        entry.output.controller = GenericByteV2::Value{controller};
        entry.output.controllerValue = GenericByteV2::Value{0};
        editElement(element, std::move(entry));
    }
    return rules;
}

bool canWaitFor(const RuleEntry& first, bool rises, int from, int to) {
    const auto offset = rises ? offsetOf(first) : 0;
    return canHaveRange(first.trigger) && isDataByte(from) && isDataByte(to) && isDataByte(from + offset) &&
           isDataByte(to + offset);
}

RuleList withRange(const RuleList& run, std::uint8_t from, std::uint8_t to) {
    const auto [least, greatest] = std::minmax(from, to);
    const auto& first = run.front().rule;
    const bool rises = isRising(run);
    if (!canWaitFor(first, rises, least, greatest)) {
        return run;
    }
    const auto offset = rises ? offsetOf(first) : 0;
    RuleList rules;
    for (int value = least; value <= greatest; ++value) {
        const auto count = rules.size();
        auto element = run[std::min(count, run.size() - 1)];
        element.id = count < run.size() ? element.id : UUID();
        if (least < greatest) {
            element.loadedMessage.reset();
        }
        auto entry = element.rule;
        waitFor(entry, value);
        if (rises) {
            send(entry, value + offset);
        }
        editElement(element, std::move(entry));
        rules.push_back(std::move(element));
    }
    return rules;
}

bool canTranspose(const RuleEntry& first, std::size_t count, int offset) {
    const auto value = comparedValue(first);
    return value && risingField(first.output.type) != nullptr && isDataByte(*value + offset) &&
           isDataByte(*value + offset + static_cast<int>(count) - 1);
}

RuleList transposed(const RuleList& run, int offset) {
    auto rules = run;
    if (canTranspose(run.front().rule, run.size(), offset)) {
        for (auto& element : rules) {
            auto entry = element.rule;
            send(entry, *comparedValue(entry) + offset);
            editElement(element, std::move(entry));
        }
    }
    return rules;
}

RuleList sendingAlike(const RuleList& run, const GenericByteV2& value) {
    auto rules = run;
    for (auto& element : rules) {
        auto entry = element.rule;
        entry.output.*risingField(entry.output.type) = value;
        editElement(element, std::move(entry));
    }
    return rules;
}

}  // namespace quillo
