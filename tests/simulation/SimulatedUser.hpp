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
class SimulatedUser {
public:
    /// Opens it on a unit that runs these rules.
    SimulatedUser(EditorUnit& unit, const std::vector<Rule>& running);

    void act(const UserStep& step);
    /// Puts a preset of these rules in the place of all; nothing happens for one that an editor cannot hold.
    void import(const std::vector<Rule>& rules);

    /// The unit runs other rules, and the next look shows them: what could be undone is forgotten.
    void see(const std::vector<Rule>& running) { history_ = {running}, now_ = 0; }

    /// Brings the editor up to date and its alerts away.
    void look();

    /// The rules that must run.
    [[nodiscard]] const std::vector<Rule>& rules() const { return history_[now_]; }

    /// The first difference between what the editor shows and what it must.
    [[nodiscard]] std::optional<std::string> difference() const;

    [[nodiscard]] const QuilloModel& model() const { return *unit_.model(); }

private:
    void change(std::vector<Rule> rules);
    void add(std::size_t which);
    void duplicate(std::size_t index);
    void remove(std::size_t index);
    void move(std::size_t from, std::size_t to);
    void undo();
    void redo();

    EditorUnit& unit_;
    RuleListEditor editor_;
    std::vector<std::vector<Rule>> history_;
    std::size_t now_ = 0;
};

}  // namespace quillo::test
