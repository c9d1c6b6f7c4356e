// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillo {

/// The folders of data of this user and of the system, the user's first, from the environment's values (null
/// when not set) as free desktops agree upon, and at last where the build was configured to install.
[[nodiscard]] std::vector<std::filesystem::path> dataFolders(const char* xdgDataHome, const char* home,
                                                             const char* xdgDataDirs);

/// The same from the environment of this process.
[[nodiscard]] std::vector<std::filesystem::path> dataFolders();

/// Where the guide's page may stand, the likeliest place first, for a program or plug-in that was loaded from
/// `binary`: beside it, where it was built or unpacked, and in the data folders. Nowhere else: a page in a
/// folder above may be anybody's.
[[nodiscard]] std::vector<std::filesystem::path> guidePlaces(
    const std::filesystem::path& binary, const std::vector<std::filesystem::path>& dataFolders);

/// Where the presets that come with it may stand, the likeliest place first: beside the binary and beside the
/// bundle that holds it, as in the tree that it was built in; in the tree that it was installed in, around
/// the `bin` or `lib` that it lies in; and in the data folders.
[[nodiscard]] std::vector<std::filesystem::path> examplePlaces(
    const std::filesystem::path& binary, const std::vector<std::filesystem::path>& dataFolders);

/// The first of these places at which there is a file.
[[nodiscard]] std::optional<std::filesystem::path> firstFile(
    const std::vector<std::filesystem::path>& places);

/// The first of these places at which there is a folder.
[[nodiscard]] std::optional<std::filesystem::path> firstFolder(
    const std::vector<std::filesystem::path>& places);

/// The address of a file, for a browser: every byte that an address cannot hold as it is stands as %XX.
[[nodiscard]] std::string fileAddress(const std::filesystem::path& file);

}  // namespace quillo
