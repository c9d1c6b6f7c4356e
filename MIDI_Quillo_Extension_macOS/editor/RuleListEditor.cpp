// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListEditor.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>

#include "editor/DecimalText.hpp"
#include "platform/FatalError.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

using Offset = RuleList::difference_type;

/// The number in a name such as "Message #3"; 0 for every other name.
std::int64_t numberOf(std::string_view name) {
    constexpr std::string_view prefix = "Message #";
    if (name.size() <= prefix.size() || !name.starts_with(prefix)) {
        return 0;
    }
    return parseSignedDecimal(name.substr(prefix.size())).value_or(0);
}

}  // namespace

std::int64_t nextIndex(const RuleList& rules) {
    std::int64_t greatest = 0;
    for (const auto& element : rules) {
        greatest = std::max(greatest, numberOf(element.rule.name));
    }
    if (greatest == std::numeric_limits<std::int64_t>::max()) {
        fatalError("there is no number left for a new rule's name");
    }
    return greatest + 1;
}

std::string changedField(const RuleEntry& before, const RuleEntry& after) {
    std::string field;
    int changes = 0;
    const auto compare = [&](const char* name, const auto& one, const auto& other) {
        if (!(one == other)) {
            field = name;
            ++changes;
        }
    };
    compare("name", before.name, after.name);
    compare("trigger type", before.trigger.type, after.trigger.type);
    compare("trigger channel", before.trigger.channel, after.trigger.channel);
    compare("trigger note", before.trigger.note, after.trigger.note);
    compare("trigger controller", before.trigger.controller, after.trigger.controller);
    compare("trigger value", before.trigger.controllerValue, after.trigger.controllerValue);
    compare("trigger program", before.trigger.program, after.trigger.program);
    compare("policy", before.trigger.passThrough, after.trigger.passThrough);
    compare("type", before.output.type, after.output.type);
    compare("channel", before.output.channel, after.output.channel);
    compare("note", before.output.note, after.output.note);
    compare("velocity", before.output.velocity, after.output.velocity);
    compare("pitch", before.output.pitch, after.output.pitch);
    compare("bank", before.output.bank, after.output.bank);
    compare("program", before.output.program, after.output.program);
    compare("pressure", before.output.pressure, after.output.pressure);
    compare("controller", before.output.controller, after.output.controller);
    compare("value", before.output.controllerValue, after.output.controllerValue);
    compare("bytes", before.output.systemExclusive, after.output.systemExclusive);
    compare("delay", before.output.delay, after.output.delay);
    return changes == 1 ? field : "";
}

std::vector<Rule> rulesOf(const RuleList& list) {
    std::vector<Rule> rules;
    rules.reserve(list.size());
    std::ranges::transform(list, std::back_inserter(rules),
                           [](const auto& element) { return ruleFromEntry(element.rule); });
    return rules;
}

RuleListEditor::RuleListEditor(std::shared_ptr<QuilloModel> model, OnRulesChanged onRulesChanged,
                               OnInstantMessageClick onInstantMessageClick)
    : model_(std::move(model)),
      onRulesChanged_(std::move(onRulesChanged)),
      onInstantMessageClick_(std::move(onInstantMessageClick)),
      rulesObservation_(model_->observeRules([this] {
          if (!changing_) {
              history_.clear();
          }
      })) {}

std::optional<std::size_t> RuleListEditor::find(const UUID& id) const {
    const auto found = std::ranges::find(rules(), id, &RuleEntryIdentifiable::id);
    if (found == rules().end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(std::distance(rules().begin(), found));
}

/// Hands the list to the engine; when that refuses it, the alert says why.
bool RuleListEditor::isTakenByEngine(const RuleList& list) {
    try {
        onRulesChanged_(rulesOf(list));
    } catch (const FatalError& error) {
        alert(error.what());
        return false;
    }
    return true;
}

void RuleListEditor::show(RuleList list) {
    changing_ = true;
    model_->setRules(std::move(list));
    changing_ = false;
}

/// The step is noted before the list is shown: whoever sees the new list can undo it.
void RuleListEditor::apply(RuleList after, const std::string& stepName, const std::string& joinKey) {
    if (isTakenByEngine(after)) {
        history_.note(stepName, rules(), after, joinKey);
        show(std::move(after));
    }
}

void RuleListEditor::add(const MIDIRuleType& type) {
    if (whyNotEditable()) {
        alert(*whyNotEditable());
        return;
    }
    try {
        auto list = rules();
        list.push_back({UUID(), defaultEntry(type, nextIndex(list))});
        const auto name = "Add " + list.back().rule.name;
        apply(std::move(list), name);
    } catch (const FatalError& error) {
        alert(error.what());
    }
}

void RuleListEditor::duplicate(const UUID& id) {
    const auto position = find(id);
    if (!position) {
        return;
    }
    auto list = rules();
    const auto entry = list[*position].rule;
    list.insert(list.begin() + static_cast<Offset>(*position) + 1, {UUID(), entry});
    apply(std::move(list), "Duplicate " + entry.name);
}

void RuleListEditor::remove(const UUID& id) {
    const auto position = find(id);
    if (!position) {
        return;
    }
    auto list = rules();
    const auto name = list[*position].rule.name;
    list.erase(list.begin() + static_cast<Offset>(*position));
    apply(std::move(list), "Delete " + name);
}

void RuleListEditor::move(const UUID& id, std::size_t position) {
    const auto from = find(id);
    if (!from) {
        return;
    }
    auto list = rules();
    const auto to = std::min(position, list.size() - 1);
    const auto at = [&list](std::size_t index) { return list.begin() + static_cast<Offset>(index); };
    const auto name = list[*from].rule.name;
    if (*from < to) {
        std::rotate(at(*from), at(*from + 1), at(to + 1));
    } else {
        std::rotate(at(to), at(*from), at(*from + 1));
    }
    apply(std::move(list), "Move " + name);
}

void RuleListEditor::editWith(const UUID& id, const std::function<void(RuleEntry&)>& change,
                              const std::string& field) {
    const auto position = find(id);
    if (!position) {
        return;
    }
    auto list = rules();
    const auto name = list[*position].rule.name;
    change(list[*position].rule);
    apply(std::move(list), "Edit " + name, field.empty() ? "" : id.text() + field);
}

void RuleListEditor::edit(const UUID& id, RuleEntry entry, const std::string& field) {
    editWith(id, [&entry](RuleEntry& rule) { rule = std::move(entry); }, field);
}

void RuleListEditor::changeTriggerType(const UUID& id, TriggerEntryType type) {
    editWith(
        id,
        [type](RuleEntry& rule) {
            rule = withUsableChoices(type, rule);
            rule.trigger.type = type;
        },
        "");
}

void RuleListEditor::changeOutputType(const UUID& id, OutputEntryType type) {
    editWith(
        id,
        [type](RuleEntry& rule) {
            rule.output.type = type;
            rule = withUsableChoices(rule.trigger.type, rule);
        },
        "");
}

void RuleListEditor::replaceAll(RuleList list, const std::string& stepName) {
    apply(std::move(list), stepName);
}

void RuleListEditor::send(const UUID& id) {
    const auto position = find(id);
    if (!position || !isFixed(rules()[*position].rule.output)) {
        return;
    }
    onInstantMessageClick_(ruleFromEntry(rules()[*position].rule).output.message);
}

void RuleListEditor::undo() {
    if (undoName()) {
        walk(&RuleListHistory::undo);
    }
}

void RuleListEditor::redo() {
    if (redoName()) {
        walk(&RuleListHistory::redo);
    }
}

void RuleListEditor::walk(RuleList (RuleListHistory::*step)(RuleList)) {
    auto history = history_;
    auto list = (history.*step)(rules());
    if (isTakenByEngine(list)) {
        history_ = std::move(history);
        show(std::move(list));
    }
}

}  // namespace quillo
