// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string_view>

namespace quillo {

/// A preset that comes with the program.
struct LibraryPreset {
    std::string_view task;      ///< what it is for, with others: "Pedals"
    std::string_view name;      ///< that of its file, without ".json"
    std::string_view sentence;  ///< what it does, on one line of a terminal
    std::string_view document;  ///< the bytes of its file
};

/// All of them; those of one task stand together.
[[nodiscard]] std::span<const LibraryPreset> presetLibrary();

}  // namespace quillo
