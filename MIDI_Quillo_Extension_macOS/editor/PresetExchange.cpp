// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetExchange.hpp"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "persistence/DecodingError.hpp"
#include "persistence/EncodingError.hpp"
#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "rules/RuleLabel.hpp"

namespace quillo {

namespace {

constexpr auto exportAgain =
    "The rules are as they were. Choose another file, or export this one again where its rules work.";
constexpr auto cannotBeImported = " cannot be imported. ";
constexpr auto chooseAnother = "The rules are as they were. Choose another file.";

PluginData readRules(std::span<const std::uint8_t> bytes) {
    try {
        return PluginData::read(bytes);
    } catch (const DecodingError& error) {
        const auto problem = problemInWords(error, bytes);
        if (!isAboutRule(error)) {
            throw NoPreset(problem);
        }
        throw ImportError(problem);
    } catch (const FatalError& error) {
        throw ImportError(error.inWords());
    }
}

/// What the operation does or throws; the error names the file, and not its whole path.
template <class Operation>
auto underShortName(const std::filesystem::path& path, Operation operation) {
    try {
        return operation();
    } catch (const FileError& error) {
        throw FileError(inQuotes(path.filename().string()) + " " + error.reason() + ".");
    }
}

}  // namespace

std::vector<std::uint8_t> exportPreset(const RuleList& rules) {
    return documentOf(rules).write();
}

RuleList importPreset(std::span<const std::uint8_t> bytes) {
    const auto [rules, shelf] = readRules(bytes);
    std::size_t position = 0;
    visitInOrder(rules, shelf, [&position](const Rule& rule, bool /*isOff*/) {
        if (const auto reason = whyNoEntry(rule)) {
            throw ImportError(ruleLabel(position, rule.name) + " cannot be edited: " + *reason + ".");
        }
        ++position;
    });
    return elementsFrom(rules, shelf);
}

bool importPreset(const std::string& name, const std::function<std::vector<std::uint8_t>()>& read,
                  RuleListEditor& editor) {
    try {
        return editor.replaceAll(importPreset(read()), "Import " + name);
    } catch (const FileError& error) {
        editor.alert(std::string(error.what()) + "\n" + chooseAnother);
    } catch (const NoPreset& error) {
        editor.alert(inQuotes(name) + cannotBeImported + error.what() + "\n" + chooseAnother);
    } catch (const ImportError& error) {
        editor.alert(inQuotes(name) + cannotBeImported + error.what() + "\n" + exportAgain);
    }
    return false;
}

std::string textOfRules(const RuleListEditor& editor, const RuleIds& ids) {
    const std::set<UUID> wanted(ids.begin(), ids.end());
    RuleList list;
    std::ranges::copy_if(editor.rules(), std::back_inserter(list),
                         [&wanted](const auto& element) { return wanted.contains(element.id); });
    const auto bytes = exportPreset(list);
    return {bytes.begin(), bytes.end()};
}

bool pasteText(const std::string& text, const RuleIds& behind, RuleListEditor& editor) {
    try {
        if (text.size() > usualSizeLimit) {
            throw NoPreset("It is longer than 64 MiB.");
        }
        const std::vector<std::uint8_t> bytes(text.begin(), text.end());
        return editor.paste(behind, importPreset(bytes));
    } catch (const ImportError& error) {
        editor.alert(std::string("What the clipboard holds cannot be pasted. ") + error.what() +
                     "\nThe rules are as they were. Copy cards, or the text of a preset.");
    }
    return false;
}

bool exportPreset(const std::function<void(std::span<const std::uint8_t> bytes)>& write,
                  RuleListEditor& editor) {
    const auto rules = editor.storedRules();
    if (!rules) {
        editor.alert(editor.whyNotEditable().value_or(""));
        return false;
    }
    try {
        write(rules->write());
        return true;
    } catch (const FileError& error) {
        editor.alert(error.what());
    } catch (const EncodingError& error) {
        editor.alert(error.what());
    }
    return false;
}

DropEffect effectOfDropping(const std::vector<std::filesystem::path>& files) {
    if (files.size() != 1) {
        return {false,
                std::to_string(files.size()) +
                    " files cannot be imported at once, because a preset takes the place of all rules. "
                    "Drop one preset file."};
    }
    const auto name = inQuotes(files.front().filename().string());
    std::error_code ignored;
    if (std::filesystem::is_directory(files.front(), ignored)) {
        return {false, name + " is a folder. Drop one preset file."};
    }
    return {true, "Import " + name + " in the place of all rules"};
}

bool importPresetFile(const std::filesystem::path& path, RuleListEditor& editor) {
    return importPreset(
        path.filename().string(), [&] { return underShortName(path, [&] { return readRegularFile(path); }); },
        editor);
}

bool exportPresetFile(const std::filesystem::path& path, Existing existing, RuleListEditor& editor) {
    return exportPreset(
        [&](std::span<const std::uint8_t> bytes) {
            underShortName(path, [&] { writeWholeFile(path, bytes, existing); });
        },
        editor);
}

}  // namespace quillo
