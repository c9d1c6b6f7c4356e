// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulation/SimulatedUser.hpp"

#include <algorithm>
#include <array>

#include "editor/PresetExchange.hpp"
#include "persistence/PluginData.hpp"

namespace quillo::test {

namespace {

/// An editor shows a pressure as a number, never as one that is copied.
bool canBeEdited(const Rule& rule) {
    const auto* message = rule.output.message.getIf<RuleOutputVariantsV2::Protocol>();
    const auto* status = message == nullptr ? nullptr : message->status.getIf<StatusByteV2::WithChannel>();
    return status == nullptr || status->status != StatusV2::channelPressure || !message->byte1.isCopied();
}

}  // namespace

SimulatedUser::SimulatedUser(EditorUnit& unit, const PluginData& document)
    : unit_(unit),
      editor_(
          unit.model(),
          [&unit](std::vector<Rule> rules, RuleShelf shelf) {
              unit.onRulesChanged(std::move(rules), std::move(shelf));
          },
          [&unit](const RuleOutputVariantsV2& message) { unit.onInstantMessageClick(message); }),
      history_{listOf(document)} {
    look();
}

SimulatedUser::List SimulatedUser::listOf(const PluginData& document) {
    List list;
    for (const auto& rule : document.rules) {
        list.push_back({rule});
    }
    std::size_t behind = 0;
    for (const auto& shelved : document.shelf) {
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(shelved.place + behind++),
                    Listed{shelved.rule, true});
    }
    return list;
}

PluginData SimulatedUser::document() const {
    PluginData document;
    for (const auto& [rule, off] : history_[now_]) {
        if (off) {
            document.shelf.push_back({static_cast<std::uint32_t>(document.rules.size()), rule});
        } else {
            document.rules.push_back(rule);
        }
    }
    return document;
}

void SimulatedUser::look() {
    unit_.drain();
    while (editor_.alertErrorMessage()) {
        editor_.dismissAlert();
    }
}

void SimulatedUser::act(const UserStep& step) {
    if (step.action == UserStep::Action::undo) {
        return undo();
    }
    if (step.action == UserStep::Action::redo) {
        return redo();
    }
    if (!canEdit()) {
        return;
    }
    if (step.action == UserStep::Action::add) {
        return add(step.number);
    }
    const auto size = editor_.rules().size();
    if (size == 0) {
        return;
    }
    switch (step.action) {
    case UserStep::Action::duplicate: return duplicate(step.number % size);
    case UserStep::Action::remove: return remove(step.number % size);
    case UserStep::Action::switchOff: return switchOffOrOn(step.number % size);
    default: return move(step.number % size, step.number / size % size);
    }
}

bool SimulatedUser::canEdit() const {
    return std::ranges::all_of(history_[now_], canBeEdited, &Listed::rule);
}

/// What was undone can be redone no more.
void SimulatedUser::change(List list) {
    history_.resize(now_ + 1);
    history_.push_back(std::move(list));
    ++now_;
}

void SimulatedUser::add(std::size_t which) {
    constexpr std::array types{OutputEntryType::NoteOn, OutputEntryType::ProgramChange,
                               OutputEntryType::SystemExclusive};
    const MIDIRuleType type = MIDIRuleType::OutputType{types[which % types.size()]};
    auto list = history_[now_];
    list.push_back({ruleFromElement({UUID(), defaultEntry(type, nextIndex(editor_.rules()))})});
    editor_.add(type);
    change(std::move(list));
}

void SimulatedUser::duplicate(std::size_t index) {
    auto list = history_[now_];
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), Listed(list[index]));
    editor_.duplicate({editor_.rules()[index].id});
    change(std::move(list));
}

void SimulatedUser::remove(std::size_t index) {
    auto list = history_[now_];
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    editor_.remove({editor_.rules()[index].id});
    change(std::move(list));
}

void SimulatedUser::move(std::size_t from, std::size_t to) {
    if (from == to) {
        return;
    }
    auto list = history_[now_];
    const auto moved = list[from];
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(from));
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(to), moved);
    editor_.move({editor_.rules()[from].id}, to);
    change(std::move(list));
}

void SimulatedUser::switchOffOrOn(std::size_t index) {
    auto list = history_[now_];
    list[index].off = !list[index].off;
    editor_.setOff({editor_.rules()[index].id}, list[index].off);
    change(std::move(list));
}

void SimulatedUser::undo() {
    editor_.undo();
    now_ -= now_ > 0 ? 1U : 0U;
}

void SimulatedUser::redo() {
    editor_.redo();
    now_ += now_ + 1 < history_.size() ? 1U : 0U;
}

void SimulatedUser::import(const std::vector<Rule>& rules) {
    const auto bytes = PluginData{rules}.write();
    const bool isNothing = canEdit() && rules.empty() && history_[now_].empty();
    static_cast<void>(importPreset("a preset", [&bytes] { return bytes; }, editor_));
    if (!isNothing && std::ranges::all_of(rules, canBeEdited)) {
        change(listOf({rules}));
    }
}

std::optional<std::string> SimulatedUser::difference() const {
    if (editor_.whyNotEditable().has_value() == canEdit()) {
        return canEdit() ? "the editor refuses rules that it can show" : "it takes rules that it cannot show";
    }
    if (editor_.storedRules() != document()) {
        return "the editor shows other rules than it must";
    }
    if (editor_.undoName().has_value() != (now_ > 0)) {
        return "what can be undone is another";
    }
    if (editor_.redoName().has_value() != (now_ + 1 < history_.size())) {
        return "what can be redone is another";
    }
    return std::nullopt;
}

}  // namespace quillo::test
