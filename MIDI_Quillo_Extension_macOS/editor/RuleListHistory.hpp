// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "rules/RuleEntryIdentifiable.hpp"

namespace quillo {

using RuleList = std::vector<RuleEntryIdentifiable>;

/// The changes of a rule list that can be undone and redone, each with a name such as "Delete Message #3".
/// Bounded: beyond `capacity` steps the oldest is forgotten. A step keeps only the part of the list that it
/// changed. [main] only.
class RuleListHistory {
public:
    static constexpr std::size_t defaultCapacity = 200;

    explicit RuleListHistory(std::size_t capacity = defaultCapacity) : capacity_(capacity) {}

    /// Notes a change that was made, from `before` to `after`; what was undone can no longer be redone. A
    /// change that goes on with the step before it, such as the next turn of a wheel over the same number,
    /// joins it when both have the same non-empty `joinKey`. What changes nothing, alone or joined, is not
    /// noted.
    void note(std::string name, const RuleList& before, const RuleList& after, std::string joinKey = "");

    /// Notes that `after` took the place of the whole list, or of something that is no list: `before` is
    /// empty then. It is a step even if both are alike.
    void noteReplacement(std::string name, const RuleList& before, const RuleList& after);

    /// Whether the step that was undone or redone last is such a replacement.
    [[nodiscard]] bool hasWalkedReplacement() const { return hasWalkedReplacement_; }

    /// The next change begins a step, whatever its `joinKey`.
    void endStep();

    /// Whether no step was forgotten since the history was clear.
    [[nodiscard]] bool isWhole() const { return whole_; }

    /// The name of the step that `undo` would take back; nothing when there is none.
    [[nodiscard]] std::optional<std::string> undoName() const;
    /// The name of the step that `redo` would make again; nothing when there is none.
    [[nodiscard]] std::optional<std::string> redoName() const;

    /// The list without its last step. `list` must be as the last step left it; it is returned unchanged when
    /// there is nothing to undo.
    [[nodiscard]] RuleList undo(RuleList list);
    /// The list with the step again that was undone last.
    [[nodiscard]] RuleList redo(RuleList list);

    /// Forgets everything.
    void clear();

private:
    /// Elements of a list that others took the place of, from a position on.
    struct Change {
        std::size_t position = 0;
        RuleList removed;
        RuleList inserted;
    };
    struct Step {
        std::string name;
        std::string joinKey;
        std::vector<Change> changes;
        bool isReplacement = false;
    };

    [[nodiscard]] static Change difference(const RuleList& before, const RuleList& after);
    void push(Step step);
    void takeBackLast();
    static void replace(RuleList& list, std::size_t position, const RuleList& out, const RuleList& in);

    std::size_t capacity_;
    bool whole_ = true;
    bool hasWalkedReplacement_ = false;
    std::deque<Step> done_;
    std::vector<Step> undone_;
};

}  // namespace quillo
