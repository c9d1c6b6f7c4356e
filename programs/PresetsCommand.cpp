// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "platform/QuotedText.hpp"
#include "presets/PresetLibrary.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 2> presetsOptions{{{"--write", true}, {"--force"}}};

void list(std::ostream& out) {
    std::string_view task;
    for (const auto& preset : presetLibrary()) {
        if (preset.task != task) {
            out << (task.empty() ? "" : "\n") << preset.task << '\n';
            task = preset.task;
        }
        out << "  " << preset.name << "\n    " << preset.sentence << '\n';
    }
}

const LibraryPreset& presetCalled(const std::string& name) {
    const auto presets = presetLibrary();
    const auto found = std::ranges::find(presets, name, &LibraryPreset::name);
    if (found == presets.end()) {
        throw UsageError("there is no preset " + inQuotes(name) + "; `midi-quillo presets` lists them");
    }
    return *found;
}

}  // namespace

int runPresetsCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, presetsOptions);
    const auto& names = arguments.operands();
    const auto target = arguments.text("--write");
    if (names.size() > 1 || (names.empty() && target)) {
        throw UsageError("presets takes one name");
    }
    if (names.empty()) {
        list(console.out);
        return exitSuccess;
    }
    const auto document = presetCalled(names.front()).document;
    if (target) {
        const std::vector<std::uint8_t> bytes(document.begin(), document.end());
        OutputFile(*target, arguments.has("--force"), &console.out).write(bytes);
    } else {
        console.out << document << '\n';
    }
    return exitSuccess;
}

}  // namespace quillo
