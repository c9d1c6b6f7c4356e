// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "editor/RuleListEditor.hpp"
#include "session/EditorUnit.hpp"
#include "simulation/Scenario.hpp"

namespace quillo::test {

/// An editor that is open, without its window, and what its user must find in it: every list there has been.
/// Only what a rule that is added begins with is asked of the editor's own parts.
class SimulatedUser {
public:
    /// Opens it on a unit that holds this document.
    SimulatedUser(EditorUnit& unit, const PluginData& document);

    void act(const UserStep& step);
    /// Puts a preset of these rules in the place of all; nothing happens for one that an editor cannot hold.
    void import(const std::vector<Rule>& rules);

    /// The unit holds another document, and the next look shows it: what could be undone is forgotten.
    void see(const PluginData& document) { history_ = {listOf(document)}, now_ = 0; }

    /// Brings the editor up to date and its alerts away.
    void look();

    /// The rules that must run, and those that must be kept switched off.
    [[nodiscard]] PluginData document() const;

    /// The first difference between what the editor shows and what it must.
    [[nodiscard]] std::optional<std::string> difference() const;

    [[nodiscard]] const QuilloModel& model() const { return *unit_.model(); }

private:
    struct Listed {
        Rule rule;
        bool off = false;

        bool operator==(const Listed&) const = default;
    };
    using List = std::vector<Listed>;

    /// Whether the list that must be there is one that an editor can hold.
    [[nodiscard]] bool canEdit() const;
    [[nodiscard]] static List listOf(const PluginData& document);
    void change(List list);
    void add(std::size_t which);
    void duplicate(std::size_t index);
    void remove(std::size_t index);
    void move(std::size_t from, std::size_t to);
    void switchOffOrOn(std::size_t index);
    void undo();
    void redo();

    EditorUnit& unit_;
    RuleListEditor editor_;
    std::vector<List> history_;
    std::size_t now_ = 0;
};

}  // namespace quillo::test
