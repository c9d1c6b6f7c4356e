// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "analysis/RuleReason.hpp"
#include "log/EventLogEntry.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"
#include "session/MarkedLog.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// A unit as an editor sees it: all that an editor can ask of one. Its functions are those of the binary that
/// renders, so that an editor in a binary of its own brings no engine along. Editors come and go, the unit
/// with its model stays. [main]
class EditorUnit {
public:
    EditorUnit() = default;
    EditorUnit(const EditorUnit&) = delete;
    EditorUnit& operator=(const EditorUnit&) = delete;

    /// What editors show: rules, logs and alerts. Never null, and always the same.
    [[nodiscard]] virtual const std::shared_ptr<QuilloModel>& model() const = 0;

    /// An editor has been made. From the first time on, the model follows the unit's rules and keeps its
    /// logs.
    virtual void viewDidLoad() = 0;

    /// Installs an edited list, and keeps those of its rules that are switched off. Throws the `FatalError`
    /// of rules that cannot be compiled; those that were installed stay.
    virtual void onRulesChanged(std::vector<Rule> rules, RuleShelf shelf = {}) = 0;

    /// Sends a message by hand. Throws the `FatalError` of one that takes something from a triggering
    /// message.
    virtual void onInstantMessageClick(const RuleOutputVariantsV2& message) = 0;

    /// [any but render] Shows the user an alert: when those before it have been dismissed, or when an editor
    /// is opened.
    virtual void tellUser(std::string message) = 0;

    /// Brings the model up to date, with new log entries, rules that the host has restored, and alerts. Some
    /// 30 times a second while an editor is open.
    virtual void drain() = 0;

    /// What each of the rules makes of an event, in order, as the engine says of those that run now; nothing
    /// without a unit.
    [[nodiscard]] virtual std::vector<RuleReason> why(const EventLogEntryVariants& /*event*/) { return {}; }

    /// What the events of the model's In log would send now, beside what they did send, as the engine says;
    /// nothing without a unit.
    [[nodiscard]] virtual MarkedLog whatNow() { return {}; }

    /// Whether the model says more of what the unit does: which rules fire, and what waits; and whether the
    /// functions below are its own. Otherwise they do nothing.
    [[nodiscard]] virtual bool tellsWhatItDoes() const { return false; }

    /// Whether the list of the delayed outputs that wait is seen: only then the model keeps it.
    virtual void watchWaiting(bool /*isSeen*/) {}

    /// Discards one of these outputs, if it still waits, or all of them.
    virtual void cancelWaiting(std::uint64_t /*number*/) {}
    virtual void cancelAllWaiting() {}

    /// Ends all notes that were sent, lets go of the pedals, silences the channels that were used, and
    /// discards what waits, at the start of the next block. Later the model says what that was.
    virtual void panic() {}

    /// Fires the on-load rules at the start of the next block, as when the project was loaded.
    virtual void sendAllOnLoad() {}

    /// Whether the notes that sound end when other rules are installed. They do not at first, and no document
    /// says so.
    virtual void setNotesEndWhenRulesChange(bool /*theyEnd*/) {}
    [[nodiscard]] virtual bool notesEndWhenRulesChange() const { return false; }

protected:
    ~EditorUnit() = default;
};

}  // namespace quillo
