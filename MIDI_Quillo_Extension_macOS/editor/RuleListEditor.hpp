// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "audiounit/QuilloModel.hpp"
#include "editor/RuleListHistory.hpp"
#include "platform/Observers.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleEntryIdentifiable.hpp"

namespace quillo {

/// The number that the next new rule is named after: one more than the greatest of the list's names that read
/// "Message #" and a decimal integer, or 1. A name with the greatest 64-bit integer is a fatal error.
[[nodiscard]] std::int64_t nextIndex(const RuleList& rules);

/// The name of the only field in which two entries differ; empty when they differ in several or in none.
[[nodiscard]] std::string changedField(const RuleEntry& before, const RuleEntry& after);

/// The rules that a list stands for, in order.
[[nodiscard]] std::vector<Rule> rulesOf(const RuleList& list);

/// All that a user can do to the list of rules. Each change hands the whole converted list to the engine and
/// can be undone; a list that the engine refuses (a delay too long to count) is not kept, and `alert` says why.
/// A list that the unit brings in forgets what could be undone. [main] only.
class RuleListEditor {
public:
    /// Takes the converted list; throws `FatalError` for one that cannot be installed.
    using OnRulesChanged = std::function<void(std::vector<Rule> rules)>;
    /// Sends one message; throws `FatalError` for one that takes something from a trigger.
    using OnInstantMessageClick = std::function<void(const RuleOutputVariantsV2& message)>;

    RuleListEditor(std::shared_ptr<QuilloModel> model, OnRulesChanged onRulesChanged,
                   OnInstantMessageClick onInstantMessageClick);

    [[nodiscard]] const RuleList& rules() const { return model_->rules(); }

    /// Why the list does not show what the unit runs; nothing when it does. Until a whole list takes its place,
    /// nothing can be added to it.
    [[nodiscard]] const std::optional<std::string>& whyNotEditable() const {
        return model_->whyNotEditable();
    }

    /// Adds the default rule of this type at the end.
    void add(const MIDIRuleType& type);
    /// Adds a copy right after the rule, under the same name.
    void duplicate(const UUID& id);
    void remove(const UUID& id);
    /// Moves the rule to a position in the list, or to the last one.
    void move(const UUID& id, std::size_t position);
    /// Puts `entry` in the rule's place. Edits of the same rule under the same non-empty `field` that follow
    /// each other are one step, as when a wheel is turned.
    void edit(const UUID& id, RuleEntry entry, const std::string& field = "");
    /// Changes the rule's trigger; what the new one cannot feed falls back to its default.
    void changeTriggerType(const UUID& id, TriggerEntryType type);
    /// Changes what the rule sends. Fields keep what they hold, but for choices that the trigger cannot feed.
    void changeOutputType(const UUID& id, OutputEntryType type);
    /// Puts another list in the place of the whole one, in one step under this name.
    void replaceAll(RuleList rules, const std::string& stepName);

    /// Sends the rule's message by hand; nothing happens for one that takes something from its trigger.
    void send(const UUID& id);

    [[nodiscard]] std::optional<std::string> undoName() const { return history_.undoName(); }
    [[nodiscard]] std::optional<std::string> redoName() const { return history_.redoName(); }
    /// Nothing happens when there is nothing to undo or to redo.
    void undo();
    void redo();

    /// The text of the alert titled "Error"; it is shown while there is one.
    [[nodiscard]] const std::optional<std::string>& alertErrorMessage() const {
        return model_->alertErrorMessage();
    }
    void alert(std::string message) { model_->alert(std::move(message)); }
    void dismissAlert() { model_->dismissAlert(); }

private:
    [[nodiscard]] std::optional<std::size_t> find(const UUID& id) const;
    [[nodiscard]] bool isTakenByEngine(const RuleList& list);
    void show(RuleList list);
    void apply(RuleList after, const std::string& stepName, const std::string& joinKey = "");
    /// Goes one step back or forth.
    void walk(RuleList (RuleListHistory::*step)(RuleList));
    void editWith(const UUID& id, const std::function<void(RuleEntry&)>& change, const std::string& field);

    std::shared_ptr<QuilloModel> model_;
    OnRulesChanged onRulesChanged_;
    OnInstantMessageClick onInstantMessageClick_;
    RuleListHistory history_;
    bool changing_ = false;  ///< whether a change of the model's rules is our own
    Observation rulesObservation_;
};

}  // namespace quillo
