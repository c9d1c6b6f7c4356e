// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListEditor.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

#include "editor/DecimalText.hpp"
#include "platform/FatalError.hpp"
#include "rules/RuleLabel.hpp"
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

/// The entry with another trigger; what becomes of the event stays as it is.
RuleEntry waitingFor(const RuleTriggerEntry& trigger, const RuleEntry& entry) {
    auto changed = withUsableChoices(trigger.type, entry);
    changed.trigger = trigger;
    changed.trigger.passThrough = entry.trigger.passThrough;
    return changed;
}

/// The entry of the rule that ends what another one has begun.
RuleEntry ending(RuleEntry entry) {
    if (entry.output.type == OutputEntryType::NoteOn) {
        entry.output.type = OutputEntryType::NoteOff;
    }
    return entry;
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

std::optional<UUID> changedRule(const RuleList& before, const RuleList& after) {
    if (after.empty()) {
        return std::nullopt;
    }
    const auto [old, now] = std::ranges::mismatch(before, after);
    if (now == after.end()) {
        return after.back().id;
    }
    const bool gone = old != before.end() && std::next(old) != before.end() && *std::next(old) == *now;
    const bool movedDown =
        gone && std::ranges::find(after, old->id, &RuleEntryIdentifiable::id) != after.end();
    return movedDown ? old->id : now->id;
}

std::vector<Rule> rulesOf(const RuleList& list) {
    std::vector<Rule> rules;
    rules.reserve(list.size());
    std::ranges::transform(list, std::back_inserter(rules), ruleFromElement);
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
              start_.reset();
          }
      })) {}

std::optional<std::vector<Rule>> RuleListEditor::runningRules() const {
    return whyNotEditable() ? model_->rulesNotShown() : rulesOf(rules());
}

std::optional<std::size_t> RuleListEditor::find(const UUID& id) const {
    const auto found = std::ranges::find(rules(), id, &RuleEntryIdentifiable::id);
    if (found == rules().end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(std::distance(rules().begin(), found));
}

const RuleEntry* RuleListEditor::entryOf(const UUID& id) const {
    const auto position = find(id);
    return position ? &rules()[*position].rule : nullptr;
}

/// Hands the rules to the engine; when that refuses them, the alert says why.
bool RuleListEditor::isTakenByEngine(std::vector<Rule> rules) {
    try {
        onRulesChanged_(std::move(rules));
    } catch (const FatalError& error) {
        alert(error.inWords());
        return false;
    }
    return true;
}

void RuleListEditor::show(RuleList list) {
    changing_ = true;
    model_->setRules(std::move(list));
    changing_ = false;
}

/// Nothing is changed while rules are not shown but by what replaces them all: that is the history's first
/// step.
void RuleListEditor::noteStart() {
    if (model_->rulesNotShown()) {
        start_ = RulesNotShown{*whyNotEditable(), *model_->rulesNotShown()};
    }
}

/// The step is noted before the list is shown: whoever sees the new list can undo it.
bool RuleListEditor::apply(RuleList after, const std::string& stepName, const std::string& joinKey) {
    if (!isTakenByEngine(rulesOf(after))) {
        return false;
    }
    if (whyNotEditable()) {
        noteStart();
        history_.noteReplacement(stepName, after);
    } else {
        history_.note(stepName, rules(), after, joinKey);
    }
    show(std::move(after));
    return true;
}

void RuleListEditor::append(const std::vector<Maker>& makers) {
    if (whyNotEditable()) {
        alert(*whyNotEditable());
        return;
    }
    try {
        auto list = rules();
        for (const auto& make : makers) {
            list.push_back({UUID(), make(nextIndex(list))});
        }
        const auto name = "Add " + list[rules().size()].rule.name;
        apply(std::move(list), name);
    } catch (const FatalError& error) {
        alert(error.inWords());
    }
}

void RuleListEditor::add(const MIDIRuleType& type) {
    append({[&type](std::int64_t index) { return defaultEntry(type, index); }});
}

void RuleListEditor::addSending(const RuleOutputEntry& output) {
    append({[&output](std::int64_t index) {
        auto entry = defaultEntry(output.type, index);
        entry.output = output;
        return entry;
    }});
}

void RuleListEditor::addWaitingFor(const std::vector<RuleTriggerEntry>& triggers) {
    std::vector<Maker> makers;
    for (const auto& trigger : triggers) {
        const bool isSecond = !makers.empty();
        makers.emplace_back([&trigger, isSecond](std::int64_t index) {
            const auto entry = waitingFor(trigger, defaultEntry(OutputEntryType::NoteOn, index));
            return isSecond ? ending(entry) : entry;
        });
    }
    append(makers);
}

void RuleListEditor::learn(const UUID& id, const std::vector<RuleTriggerEntry>& triggers) {
    const auto position = find(id);
    if (!position) {
        return;
    }
    auto list = rules();
    auto at = list.begin() + static_cast<Offset>(*position);
    const auto before = *at;
    editElement(*at, waitingFor(triggers.front(), before.rule));
    for (const auto& trigger : std::span(triggers).subspan(1)) {
        auto second = before;
        second.id = UUID();
        editElement(second, ending(waitingFor(trigger, before.rule)));
        at = list.insert(at + 1, std::move(second));
    }
    applyEdit(*position, std::move(list), "Learn " + before.rule.name);
}

void RuleListEditor::duplicate(const UUID& id) {
    const auto position = find(id);
    if (!position) {
        return;
    }
    auto list = rules();
    auto copy = list[*position];
    copy.id = UUID();
    const auto name = copy.rule.name;
    list.insert(list.begin() + static_cast<Offset>(*position) + 1, std::move(copy));
    apply(std::move(list), "Duplicate " + name);
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

void RuleListEditor::editWith(const UUID& id, RuleEntry entry, const std::string& joinKey) {
    if (const auto position = find(id)) {
        auto list = rules();
        editElement(list[*position], std::move(entry));
        applyEdit(*position, std::move(list), "Edit " + rules()[*position].rule.name, joinKey);
    }
}

void RuleListEditor::applyEdit(std::size_t position, RuleList after, const std::string& stepName,
                               const std::string& joinKey) {
    const auto& before = rules()[position];
    const bool changesLoaded = before.loadedMessage.has_value() && !after[position].loadedMessage.has_value();
    const auto loaded = ruleFromElement(before);
    const bool applied = apply(std::move(after), stepName, joinKey);
    if (const auto change = whatEditingChanges(loaded); change && applied && changesLoaded) {
        alert(ruleLabel(position, loaded.name) +
              " was edited, which has changed more than you see: " + *change + ". Undo brings it back.");
    }
}

void RuleListEditor::edit(const UUID& id, RuleEntry entry) {
    editWith(id, std::move(entry));
}

void RuleListEditor::step(const UUID& id, RuleEntry entry, FieldPlace field) {
    const auto now = now_();
    if (now - std::exchange(lastStep_, now) > joinTime) {
        history_.endStep();
    }
    editWith(id, std::move(entry), id.text() + std::to_string(field));
}

void RuleListEditor::changeTriggerType(const UUID& id, TriggerEntryType type) {
    if (const auto* before = entryOf(id)) {
        auto entry = withUsableChoices(type, *before);
        entry.trigger.type = type;
        editWith(id, std::move(entry));
    }
}

void RuleListEditor::changeOutputType(const UUID& id, OutputEntryType type) {
    if (const auto* before = entryOf(id)) {
        auto entry = *before;
        entry.output.type = type;
        editWith(id, withUsableChoices(entry.trigger.type, entry));
    }
}

bool RuleListEditor::replaceAll(RuleList list, const std::string& stepName) {
    const auto notice = noticeBeforeEditing(rulesOf(list));
    if (!apply(std::move(list), stepName)) {
        return false;
    }
    if (notice) {
        alert(*notice);
    }
    return true;
}

void RuleListEditor::send(const UUID& id) {
    const auto position = find(id);
    if (!position || !isFixed(rules()[*position].rule.output)) {
        return;
    }
    onInstantMessageClick_(ruleFromElement(rules()[*position]).output.message);
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

void RuleListEditor::walk(RuleList (RuleListHistory::*go)(RuleList)) {
    auto history = history_;
    auto list = (history.*go)(rules());
    if (!isTakenByEngine(isBackAtRulesNotShown(history) ? start_->rules : rulesOf(list))) {
        return;
    }
    history_ = std::move(history);
    if (isBackAtRulesNotShown(history_)) {
        bringBackRulesNotShown();
        return;
    }
    const auto changed = changedRule(rules(), list);
    show(std::move(list));
    if (changed && onWalk_) {
        onWalk_(*changed);
    }
}

bool RuleListEditor::isBackAtRulesNotShown(const RuleListHistory& history) const {
    return start_ && history.isWhole() && !history.undoName();
}

void RuleListEditor::bringBackRulesNotShown() {
    changing_ = true;
    model_->setNotEditable(start_->reason, start_->rules);
    changing_ = false;
}

}  // namespace quillo
