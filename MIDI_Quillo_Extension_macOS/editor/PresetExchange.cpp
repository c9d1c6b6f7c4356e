// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetExchange.hpp"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

#include "otherformats/OtherFormat.hpp"
#include "persistence/DecodingError.hpp"
#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "rules/RuleEntryIdentifiable.hpp"

namespace quillo {

namespace {

/// Bytes: some seconds.
constexpr std::size_t longestOfAnotherTool = std::size_t{4} << 20U;

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

RuleList editable(const std::vector<Rule>& rules, const RuleShelf& shelf) {
    if (const auto reason = whyNotInEditor(rules, shelf)) {
        throw ImportError(*reason + ".");
    }
    return elementsFrom(rules, shelf);
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
    return editable(rules, shelf);
}

namespace {

/// What was lost of another tool's rules, for the alert: the first lines, each on one of its own, and how
/// many more.
std::string firstLines(const std::string& lost) {
    constexpr std::size_t mostLines = 6;
    std::istringstream lines(lost);
    std::string words;
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        words += count < mostLines ? "\n" + line : "";
    }
    return count > mostLines ? words + "\n... and " + std::to_string(count - mostLines) + " more lines."
                             : words;
}

/// Takes the rules of another tool, and says what of them is lost.
bool importOtherFormat(const std::string& name, std::string_view text, RuleListEditor& editor) {
    if (text.size() > longestOfAnotherTool) {
        throw NoPreset(
            "It is longer than 4 MiB. On the command line, midi-quillo import makes a preset of it.");
    }
    try {
        const auto taken = readOtherFormat(text);
        if (taken.isEmpty()) {
            throw NoPreset("It holds no rule that can be taken." + firstLines(lostText(taken)));
        }
        if (!editor.replaceAll(editable(taken.rules, taken.shelf), "Import " + name)) {
            return false;
        }
        if (const auto lost = lostText(taken); !lost.empty()) {
            editor.alert(inQuotes(name) + " was imported, but not all of it:" + firstLines(lost));
        }
        return true;
    } catch (const OtherFormatError& error) {
        throw NoPreset("In " + std::string(error.what()) + ".");
    }
}

}  // namespace

bool importPreset(const std::string& name, const std::function<std::vector<std::uint8_t>()>& read,
                  RuleListEditor& editor) {
    try {
        const auto bytes = read();
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return isOtherFormat(text) ? importOtherFormat(name, text, editor)
                                   : editor.replaceAll(importPreset(bytes), "Import " + name);
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
        auto rules = importPreset(bytes);
        if (rules.empty()) {
            throw NoPreset("It holds no rule.");
        }
        return editor.paste(behind, std::move(rules));
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
