// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetExchange.hpp"

#include <utility>

#include "persistence/DecodingError.hpp"
#include "persistence/EncodingError.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

std::vector<Rule> readRules(std::span<const std::uint8_t> bytes) {
    try {
        return PluginData::read(bytes).rules;
    } catch (const DecodingError& error) {
        throw ImportError(error.mostUseful());
    } catch (const FatalError& error) {
        throw ImportError(error.what());
    }
}

}  // namespace

std::vector<std::uint8_t> exportPreset(const RuleList& rules) {
    return PluginData{rulesOf(rules)}.write();
}

RuleList importPreset(std::span<const std::uint8_t> bytes) {
    RuleList list;
    for (const auto& rule : readRules(bytes)) {
        if (const auto reason = whyNoEntry(rule)) {
            throw ImportError("The rule " + inQuotes(rule.name) + " cannot be edited: " + *reason + ".");
        }
        list.push_back(elementFromRule(rule));
    }
    return list;
}

void importPreset(const std::string& name, const std::function<std::vector<std::uint8_t>()>& read,
                  RuleListEditor& editor) {
    try {
        editor.replaceAll(importPreset(read()), "Import " + name);
    } catch (const FileError& error) {
        editor.alert(error.what());
    } catch (const ImportError& error) {
        editor.alert(error.what());
    }
}

void exportPreset(const std::function<void(std::span<const std::uint8_t> bytes)>& write,
                  RuleListEditor& editor) {
    auto rules = editor.runningRules();
    if (!rules) {
        editor.alert(editor.whyNotEditable().value_or(""));
        return;
    }
    try {
        write(PluginData{*std::move(rules)}.write());
    } catch (const FileError& error) {
        editor.alert(error.what());
    } catch (const EncodingError& error) {
        editor.alert(error.what());
    }
}

void importPresetFile(const std::filesystem::path& path, RuleListEditor& editor) {
    importPreset(path.filename().string(), [&path] { return readRegularFile(path); }, editor);
}

void exportPresetFile(const std::filesystem::path& path, RuleListEditor& editor) {
    exportPreset(
        [&path](std::span<const std::uint8_t> bytes) { writeWholeFile(path, bytes, Existing::replace); },
        editor);
}

}  // namespace quillo
