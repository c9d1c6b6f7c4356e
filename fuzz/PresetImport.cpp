// SPDX-License-Identifier: GPL-3.0-or-later
// A preset as the editor imports it, which then makes every edit of every kind, and undoes all.
#include <memory>
#include <utility>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "editor/PresetExchange.hpp"
#include "engine/RuleProcessor.hpp"
#include "persistence/PluginData.hpp"

using namespace quillo;
using fuzz::require;

namespace {

constexpr std::size_t editedRules = 3;

/// The editor over a processor, without a window.
struct Desk {
    RuleProcessor processor;
    RuleShelf shelf;
    std::shared_ptr<QuilloModel> model = std::make_shared<QuilloModel>();
    RuleListEditor editor{model,
                          [this](std::vector<Rule> rules, RuleShelf off) {
                              processor.setRules(std::move(rules));
                              shelf = std::move(off);
                          },
                          [this](const RuleOutputVariantsV2& message) { processor.send(message); }};

    Desk() {
        for (const auto& rule : fuzz::fuzzRules()) {
            list.push_back(elementFromRule(rule));
        }
        require(editor.replaceAll(list, "Begin"), "the rules to begin with are taken");
    }

    void requireShownRulesRun() {
        require(PluginData{processor.rules(), shelf} == documentOf(editor.rules()),
                "the rules that are shown are those that run");
    }

    RuleList list;
};

void importAgain(Desk& desk) {
    fuzz::Bytes exported;
    const auto keep = [&](std::span<const std::uint8_t> bytes) {
        exported.assign(bytes.begin(), bytes.end());
    };
    require(exportPreset(keep, desk.editor), "what was imported can be exported");
    require(documentOf(importPreset(exported)) == documentOf(desk.editor.rules()), "and imports as the same");
}

void editEveryWay(Desk& desk, const UUID& id) {
    auto& editor = desk.editor;
    editor.send(id);
    editor.duplicate({id});
    for (int type = 0; type <= static_cast<int>(TriggerEntryType::HostStop); ++type) {
        editor.changeTriggerType({id}, static_cast<TriggerEntryType>(type));
        desk.requireShownRulesRun();
    }
    for (int type = 0; type <= static_cast<int>(OutputEntryType::SystemExclusive); ++type) {
        editor.changeOutputType({id}, static_cast<OutputEntryType>(type));
        desk.requireShownRulesRun();
    }
    editor.send(id);
    editor.setOff({id}, true);
    desk.requireShownRulesRun();
    editor.setOff({id}, false);
    editor.move({id}, 0);
    editor.remove({id});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Desk desk;
    if (!importPreset("preset.json", [&] { return fuzz::Bytes(data, data + size); }, desk.editor)) {
        require(desk.editor.alertErrorMessage().has_value(), "a failed import shows an alert");
        require(desk.editor.rules() == desk.list, "and keeps the rules");
        desk.requireShownRulesRun();
        return 0;
    }
    desk.requireShownRulesRun();
    importAgain(desk);
    const auto imported = desk.editor.rules();
    for (std::size_t i = 0; i < std::min(imported.size(), editedRules); ++i) {
        editEveryWay(desk, imported[i].id);
    }
    while (desk.editor.undoName()) {
        desk.editor.undo();
        desk.requireShownRulesRun();
    }
    return 0;
}
