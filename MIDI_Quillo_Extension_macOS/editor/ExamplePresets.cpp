// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ExamplePresets.hpp"

#include <algorithm>
#include <system_error>

namespace quillo {

namespace {

namespace fs = std::filesystem;

const fs::path presets = "midi-quillo/presets";

/// The innermost `bin` or `lib` around a file; empty when there is none.
fs::path installedIn(const fs::path& binary) {
    auto folder = binary.parent_path();
    while (folder.has_relative_path() && folder.filename() != "bin" && folder.filename() != "lib") {
        folder = folder.parent_path();
    }
    return folder.has_relative_path() ? folder : fs::path();
}

/// The outermost folder around a file that is part of a bundle, such as `MIDI Quillo.vst3`; empty when there
/// is none.
fs::path bundleOf(const fs::path& binary) {
    fs::path bundle;
    for (auto folder = binary.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (folder.extension() == ".lv2" || folder.extension() == ".vst3") {
            bundle = folder;
        }
    }
    return bundle;
}

}  // namespace

std::vector<fs::path> examplePlaces(const fs::path& binary, const std::vector<fs::path>& dataFolders) {
    std::vector<fs::path> places{binary.parent_path() / "share" / presets};
    for (const auto& part : {bundleOf(binary), installedIn(binary)}) {
        if (!part.empty()) {
            places.push_back(part.parent_path() / "share" / presets);
        }
    }
    std::ranges::transform(dataFolders, std::back_inserter(places),
                           [](const auto& folder) { return folder / presets; });
    return places;
}

std::optional<fs::path> firstFolder(const std::vector<fs::path>& places) {
    const auto found = std::ranges::find_if(places, [](const auto& place) {
        std::error_code ignored;
        return fs::is_directory(place, ignored);
    });
    return found != places.end() ? std::optional(*found) : std::nullopt;
}

}  // namespace quillo
