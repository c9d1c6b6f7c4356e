// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <optional>

#include "editor/RuleListEditor.hpp"
#include "editor/RuleStatus.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// The user's question why an event did what it did, as long as it is open: the unit's reason for each card
/// of the list that is shown. [main] only.
class OpenQuestion {
public:
    /// Both must outlive it.
    OpenQuestion(EditorUnit& unit, const RuleListEditor& editor) : unit_(unit), editor_(editor) {}

    /// Asks about an event, in the place of the one before.
    void ask(const EventLogEntryVariants& event);
    /// The rules or their cards have changed.
    void askAgain();
    void close();

    [[nodiscard]] bool isOpen() const { return event_.has_value(); }
    /// What the card that begins with this rule says meanwhile.
    [[nodiscard]] std::optional<RuleRemark> remark(const UUID& id) const;
    /// The first rule of the first card that fired or consumed the event, if one did.
    [[nodiscard]] const std::optional<UUID>& firstConcerned() const { return firstConcerned_; }

private:
    EditorUnit& unit_;
    const RuleListEditor& editor_;
    std::optional<EventLogEntryVariants> event_;
    std::map<UUID, RuleRemark> remarks_;
    std::optional<UUID> firstConcerned_;
};

}  // namespace quillo
