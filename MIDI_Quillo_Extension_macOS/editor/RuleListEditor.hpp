// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/Binding.hpp"
#include "editor/ChannelChange.hpp"
#include "editor/FoldedRuns.hpp"
#include "editor/RuleListHistory.hpp"
#include "platform/Observers.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleEntryIdentifiable.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// Some rules of a list, in any order; those that it does not hold are ignored.
using RuleIds = std::vector<UUID>;

/// The number that the next new rule is named after: one more than the greatest of the list's names that read
/// "Message #" and a decimal integer, or 1. A name with the greatest 64-bit integer is a fatal error.
[[nodiscard]] std::int64_t nextIndex(const RuleList& rules);

/// The first rule by which two lists differ, or the one that stands in its place after it went; nothing when
/// no rule is left. Of rules that changed places those have moved that are fewer.
[[nodiscard]] std::optional<UUID> changedRule(const RuleList& before, const RuleList& after);

/// The rules of a list that run, in order: all but those that are switched off.
[[nodiscard]] std::vector<Rule> rulesOf(const RuleList& list);

/// The document of a list: these, and those that are switched off, each with its place among them.
[[nodiscard]] PluginData documentOf(const RuleList& list);

/// All that a user can do to the list of rules. Each change hands the whole converted list to the engine and
/// can be undone; what leaves the list as it is reaches nobody. A list that the engine refuses (a delay too
/// long to count) is not kept, and `alert` says why. A list that the unit brings in forgets what could be
/// undone; rules that it runs and that cannot be shown come back when what replaced them is undone.
///
/// A card stands for one rule or for a folded run; what a card does takes the rules of that card, from the
/// first to the last, and is one step. [main] only.
class RuleListEditor {
public:
    /// Takes the converted list, and the rules of it that are switched off; throws `FatalError` for one that
    /// cannot be installed.
    using OnRulesChanged = std::function<void(std::vector<Rule> rules, RuleShelf shelf)>;
    /// Sends one message; throws `FatalError` for one that takes something from a trigger.
    using OnInstantMessageClick = std::function<void(const RuleOutputVariantsV2& message)>;
    using Clock = std::chrono::steady_clock;

    /// Steps that come this soon after another one are undone together with it.
    static constexpr std::chrono::seconds joinTime{1};

    RuleListEditor(std::shared_ptr<QuilloModel> model, OnRulesChanged onRulesChanged,
                   OnInstantMessageClick onInstantMessageClick);

    /// Called with the rule that a step which was undone or redone has changed.
    void setOnWalk(std::function<void(const UUID& id)> onWalk) { onWalk_ = std::move(onWalk); }
    /// Called when a preset's rules have taken the place of all by `replaceAll`, and when that is undone or
    /// redone.
    void setOnReplaced(std::function<void()> onReplaced) { onReplaced_ = std::move(onReplaced); }
    /// Asked for the time in the place of the system's clock.
    void setNow(std::function<Clock::time_point()> now) { now_ = std::move(now); }

    [[nodiscard]] const RuleList& rules() const { return model_->rules(); }
    /// The cards of the list: single rules and folded runs.
    [[nodiscard]] const std::vector<RuleRun>& cards() const { return folded_.cards(); }
    /// The card that a rule stands on, and its rules; nothing for a rule that is not in the list.
    [[nodiscard]] std::optional<RuleRun> runOfCard(const UUID& id) const { return folded_.cardOf(id); }
    [[nodiscard]] RuleIds cardOf(const UUID& id) const;
    /// Whether the run that a rule is in can be folded, or its card unfolded.
    [[nodiscard]] bool canFold(const UUID& id) const;
    [[nodiscard]] bool isFolded(const UUID& id) const;
    /// Folding is no step: it changes nothing but the cards.
    void fold(const UUID& id) { folded_.fold(id); }
    void unfold(const UUID& id) { folded_.unfold(id); }
    /// The rules that run and those that are switched off, also what the list does not show; nothing when
    /// nobody knows them.
    [[nodiscard]] std::optional<PluginData> storedRules() const;

    /// Why the list does not show what the unit runs; nothing when it does. Until a whole list takes its
    /// place, nothing can be added to it.
    [[nodiscard]] const std::optional<std::string>& whyNotEditable() const {
        return model_->whyNotEditable();
    }

    /// Adds the default rule of this type at the end.
    void add(const MIDIRuleType& type);
    /// Adds a rule at the end that takes every note and sends it as it was played: what is changed then is
    /// all that becomes different.
    void addNotesAsPlayed();
    /// Adds a rule at the end for each trigger, in one step; of two the second as `learn` makes it.
    void addWaitingFor(const std::vector<RuleTriggerEntry>& triggers);
    /// Adds a rule at the end that sends this.
    void addSending(const RuleOutputEntry& output);
    /// Lets a card wait for the first trigger; its "Incoming" stays, and a run becomes one rule. A second
    /// trigger makes a copy right after it, in the same step: it waits for that one, and sends Note Off where
    /// the rule sends Note On.
    void learn(const RuleIds& card, const std::vector<RuleTriggerEntry>& triggers);
    /// Adds copies right after the last of the rules, in the list's order and under the same names.
    void duplicate(const RuleIds& ids);
    /// Adds copies right after a card of Note On that wait for Note Off, and send it where the rules send
    /// Note On.
    void duplicateAsNoteOff(const RuleIds& card);
    /// The step is named after what the user does: "Delete" or "Cut".
    void remove(const RuleIds& ids, const std::string& verb = "Delete");
    /// Moves the rules together, in the list's order: the first of them to a position, or as far as the list
    /// goes.
    void move(const RuleIds& ids, std::size_t position);
    /// Switches the rules off, or on again: those that are off keep their places and do not run.
    void setOff(const RuleIds& ids, bool off);
    /// Puts `entry` in the place of a card's first rule, and makes the same change to the others. Where that
    /// changes more of a loaded message than the entry shows, the alert says it.
    void edit(const RuleIds& card, const RuleEntry& entry);
    /// Edits by one of several small steps, as when a wheel is turned: those of one field that follow each
    /// other within `joinTime` are undone together.
    void step(const RuleIds& card, const RuleEntry& entry, FieldPlace field);
    /// Changes a card's trigger; what the new one cannot feed falls back to its default.
    void changeTriggerType(const RuleIds& card, TriggerEntryType type);
    /// Changes what a card sends. Fields keep what they hold, but for choices that the trigger cannot feed.
    void changeOutputType(const RuleIds& card, OutputEntryType type);
    /// Lets a card send this controller with the value 0, as the menu's shortcuts do.
    void sendController(const RuleIds& card, std::uint8_t controller);
    /// Lets a card wait for all of these values: it has as many rules from then on. Nothing happens where
    /// that cannot be.
    void setRange(const RuleIds& card, std::uint8_t from, std::uint8_t to);
    /// Lets a card send what it waits for and so much more, or the same with each of its rules.
    void transpose(const RuleIds& card, int offset);
    void sendAlike(const RuleIds& card, const GenericByteV2& value);
    /// Puts these triggers, messages or both on other channels, those that have one.
    void changeChannel(const RuleIds& ids, const ChannelChange& change);
    /// Inserts rules behind the last of these, or at the end where the list holds none of them, in one step.
    /// The alert says what must be known before they are edited.
    bool paste(const RuleIds& behind, RuleList rules);
    /// Puts another list in the place of the whole one, in one step under this name. The alert says what must
    /// be known before it is edited.
    bool replaceAll(RuleList rules, const std::string& stepName);

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
    using Maker = std::function<RuleEntry(std::int64_t index)>;

    struct RulesNotShown {
        std::string reason;
        PluginData rules;
    };

    [[nodiscard]] std::optional<std::size_t> find(const UUID& id) const;
    /// The positions of rules in the list, in its order.
    [[nodiscard]] std::vector<std::size_t> find(const RuleIds& ids) const;
    /// What a step over these rules is called: "Delete Bass split (12 rules)".
    [[nodiscard]] std::string nameOfStep(const std::string& verb,
                                         const std::vector<std::size_t>& positions) const;
    void showArrived();
    void becomeCopy(RuleEntryIdentifiable& element);
    void alertOfLoaded(const RuleList& loaded);
    [[nodiscard]] bool isTakenByEngine(PluginData data);
    void endStepUnlessSoon();
    void noteStart();
    void show(RuleList list);
    bool apply(RuleList after, const std::string& stepName, const std::string& joinKey = "");
    /// Goes one step back or forth.
    void walk(RuleList (RuleListHistory::*go)(RuleList));
    [[nodiscard]] bool isBackAtRulesNotShown(const RuleListHistory& history) const;
    void bringBackRulesNotShown();
    /// Puts what `change` makes of a card's rules in their place.
    void editCard(const RuleIds& card, const std::string& verb,
                  const std::function<RuleList(const RuleList& rules)>& change,
                  const std::string& joinKey = "");
    /// Adds rules at the end, in one step; each is made of the number that its name may have.
    void append(const std::vector<Maker>& makers);

    std::shared_ptr<QuilloModel> model_;
    OnRulesChanged onRulesChanged_;
    OnInstantMessageClick onInstantMessageClick_;
    std::function<void(const UUID&)> onWalk_;
    std::function<void()> onReplaced_ = [] {};
    std::function<Clock::time_point()> now_ = Clock::now;
    Clock::time_point lastStep_;
    RuleListHistory history_;
    FoldedRuns folded_;
    /// What the history began with, where that was rules that cannot be shown.
    std::optional<RulesNotShown> start_;
    bool changing_ = false;  ///< whether a change of the model's rules is our own
    Observation rulesObservation_;
};

}  // namespace quillo
