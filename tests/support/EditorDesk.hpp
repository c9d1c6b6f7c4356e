// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "editor/RuleListEditor.hpp"
#include "engine/RuleCompiler.hpp"
#include "session/QuilloModel.hpp"

namespace quillo::test {

/// A rule list editor whose changes reach an engine that compiles and keeps them.
struct EditorDesk {
    std::shared_ptr<QuilloModel> model = std::make_shared<QuilloModel>();
    std::vector<Rule> installed;
    RuleShelf shelf;  ///< of the rules that are installed
    std::size_t installs = 0;
    std::vector<RuleOutputVariantsV2> sent;
    RuleListEditor editor{model,
                          [this](std::vector<Rule> rules, RuleShelf off) {
                              static_cast<void>(compileRules(rules, defaultSampleRate));
                              installed = std::move(rules);
                              shelf = std::move(off);
                              ++installs;
                          },
                          [this](const RuleOutputVariantsV2& message) { sent.push_back(message); }};

    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& element : editor.rules()) {
            names.push_back(element.rule.name);
        }
        return names;
    }

    [[nodiscard]] UUID idOf(std::size_t position) const { return editor.rules()[position].id; }

    void addNoteOn() { editor.add(MIDIRuleType::OutputType{OutputEntryType::NoteOn}); }

    void addNoteOns(int count) {
        for (; count > 0; --count) {
            addNoteOn();
        }
    }
};

}  // namespace quillo::test
