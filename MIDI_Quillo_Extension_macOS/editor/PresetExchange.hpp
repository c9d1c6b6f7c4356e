// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "editor/RuleListEditor.hpp"
#include "editor/RuleListHistory.hpp"
#include "platform/AtomicFile.hpp"

/// Import and export of the rule list as a preset file: the bytes of a state document. [main] only.
namespace quillo {

/// The name that a preset is saved under unless the user chooses another; the file extension comes to it.
inline constexpr const char* defaultPresetName = "midi-quillo-preset";
inline constexpr const char* presetFileExtension = ".json";

/// Why a preset was not imported. The text is meant for the user.
class ImportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What was to be imported is no list of rules.
class NoPreset : public ImportError {
public:
    using ImportError::ImportError;
};

/// The preset file of a list.
[[nodiscard]] std::vector<std::uint8_t> exportPreset(const RuleList& rules);

/// The list in a preset file of any form, each rule under a fresh identifier: all of it, or an `ImportError`
/// for bytes that are no preset and for rules that the editor cannot hold.
[[nodiscard]] RuleList importPreset(std::span<const std::uint8_t> bytes);

/// Puts the rules of a preset, or of another tool's file, in the place of the editor's, in a step that can be
/// undone and bears the file's name, and returns whether it did. The alert says what of another tool's rules
/// could not be taken. `read` brings its bytes or throws a `FileError`. Whatever goes
/// wrong, the editor's alert says it and its rules stay.
bool importPreset(const std::string& name, const std::function<std::vector<std::uint8_t>()>& read,
                  RuleListEditor& editor);

/// The preset of some rules of the editor's, in the list's order, as a text for the clipboard: what reads
/// presets reads it. Throws an `EncodingError`.
[[nodiscard]] std::string textOfRules(const RuleListEditor& editor, const RuleIds& ids);

/// Inserts the rules of such a text, which may come from anywhere, behind some rules, and returns whether it
/// did. Whatever is wrong with it, the alert says it and the rules stay.
bool pasteText(const std::string& text, const RuleIds& behind, RuleListEditor& editor);

/// Hands the preset of the rules that run, shown or not, to `write`, which throws a `FileError` when it
/// cannot keep it, and returns whether it did. Whatever goes wrong, the editor's alert says it; so it does
/// when nobody knows the rules that run.
bool exportPreset(const std::function<void(std::span<const std::uint8_t> bytes)>& write,
                  RuleListEditor& editor);

/// What dropping files on the editor does, in words for the user.
struct DropEffect {
    bool works = false;  ///< otherwise nothing happens, and the words say why
    std::string words;
};

/// A single file is imported; folders, and several files at once, are refused.
[[nodiscard]] DropEffect effectOfDropping(const std::vector<std::filesystem::path>& files);

/// Imports a file, as above.
bool importPresetFile(const std::filesystem::path& path, RuleListEditor& editor);

/// Exports to a file, as above: whole or not at all, and in the place of one that is there only if it may be
/// replaced.
bool exportPresetFile(const std::filesystem::path& path, Existing existing, RuleListEditor& editor);

}  // namespace quillo
