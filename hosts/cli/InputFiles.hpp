// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosts/cli/MIDIFile.hpp"
#include "persistence/PluginData.hpp"

namespace quillo {

/// The files that a verb is given. What is wrong with one throws a `CommandFailure` whose text begins with
/// the file's name; its status is `exitNoInput` for a file that cannot be read.

[[nodiscard]] std::vector<std::uint8_t> readInput(const std::string& path);

/// A damaged file fails with `exitBadData` and the byte position.
[[nodiscard]] MIDIFile readMIDIInput(const std::string& path);

/// A preset as it stands in its file, and read. A damaged one fails with `badPreset` and what is wrong where.
struct PresetInput {
    std::vector<std::uint8_t> bytes;
    ReadDocument document;
};
[[nodiscard]] PresetInput readPresetInput(const std::string& path, int badPreset);

}  // namespace quillo
