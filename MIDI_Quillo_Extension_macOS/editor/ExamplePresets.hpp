// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace quillo {

/// Where the presets that come with a program or plug-in may stand that was loaded from `binary`, the
/// likeliest place first: beside the binary and beside the bundle that holds it, as in the tree that it was
/// built in; in the tree that it was installed in, around the `bin` or `lib` that it lies in; and in the data
/// folders.
[[nodiscard]] std::vector<std::filesystem::path> examplePlaces(
    const std::filesystem::path& binary, const std::vector<std::filesystem::path>& dataFolders);

/// The first of these places at which there is a folder; nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> firstFolder(
    const std::vector<std::filesystem::path>& places);

}  // namespace quillo
