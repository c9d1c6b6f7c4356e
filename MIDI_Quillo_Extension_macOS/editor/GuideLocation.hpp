// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillo {

/// Where the guide's page may stand, the likeliest place first, for a program or plug-in that was loaded from
/// `binary`: beside it in the tree that it was built or installed in, in the user's own data folder (empty when
/// there is none), and where the build was configured to install it.
[[nodiscard]] std::vector<std::filesystem::path> guidePlaces(const std::filesystem::path& binary,
                                                             const std::filesystem::path& userData);

/// The first of these places at which there is a file.
[[nodiscard]] std::optional<std::filesystem::path> firstThere(
    const std::vector<std::filesystem::path>& places);

/// The address of a file, for a browser: every byte that an address cannot hold as it is stands as %XX.
[[nodiscard]] std::string fileAddress(const std::filesystem::path& file);

}  // namespace quillo
