// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/InstalledFiles.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string_view>
#include <system_error>

namespace quillo {

namespace {

namespace fs = std::filesystem;
using Places = std::vector<fs::path>;

const fs::path guide = "doc/midi-quillo/guide/index.html";
const fs::path presets = "midi-quillo/presets";

/// A variable that is empty counts as not set.
std::string valueOr(const char* variable, const std::string& otherwise) {
    return variable != nullptr && *variable != '\0' ? variable : otherwise;
}

void append(Places& places, const Places& dataFolders, const fs::path& file) {
    std::ranges::transform(dataFolders, std::back_inserter(places),
                           [&](const auto& folder) { return folder / file; });
}

/// The innermost `bin` or `lib` around a file; empty when there is none.
fs::path installedIn(const fs::path& binary) {
    auto folder = binary.parent_path();
    while (folder.has_relative_path() && folder.filename() != "bin" && folder.filename() != "lib") {
        folder = folder.parent_path();
    }
    return folder.has_relative_path() ? folder : fs::path();
}

/// The outermost folder around a file that is part of a bundle, such as `MIDI Quillo.vst3`; empty for a file
/// outside of bundles.
fs::path bundleOf(const fs::path& binary) {
    fs::path bundle;
    for (auto folder = binary.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (folder.extension() == ".lv2" || folder.extension() == ".vst3") {
            bundle = folder;
        }
    }
    return bundle;
}

template <class Is>
std::optional<fs::path> firstThat(const Places& places, Is is) {
    const auto found = std::ranges::find_if(places, [&](const auto& place) {
        std::error_code ignored;
        return is(fs::status(place, ignored));
    });
    return found != places.end() ? std::optional(*found) : std::nullopt;
}

bool isPlainInAddress(unsigned char byte) {
    constexpr std::string_view marks = "/-._~";
    const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return letter || (byte >= '0' && byte <= '9') ||
           marks.find(static_cast<char>(byte)) != std::string_view::npos;
}

}  // namespace

Places dataFolders(const char* xdgDataHome, const char* home, const char* xdgDataDirs) {
    std::istringstream list(valueOr(xdgDataHome, valueOr(home, ".") + "/.local/share") + ":" +
                            valueOr(xdgDataDirs, "/usr/local/share:/usr/share") + ":" + QUILLO_DATA_FOLDER);
    Places folders;
    for (std::string folder; std::getline(list, folder, ':');) {
        if (fs::path(folder).is_absolute()) {
            folders.emplace_back(folder);
        }
    }
    return folders;
}

Places dataFolders() {
    return dataFolders(std::getenv("XDG_DATA_HOME"), std::getenv("HOME"), std::getenv("XDG_DATA_DIRS"));
}

Places guidePlaces(const fs::path& binary, const Places& dataFolders) {
    const auto folder = binary.parent_path();
    Places places{folder / "guide" / guide.filename()};
    if (folder.filename() == "bin") {
        places.push_back(folder.parent_path() / "share" / guide);
    }
    append(places, dataFolders, guide);
    return places;
}

Places examplePlaces(const fs::path& binary, const Places& dataFolders) {
    Places places{binary.parent_path() / "share" / presets};
    for (const auto& part : {bundleOf(binary), installedIn(binary)}) {
        if (!part.empty()) {
            places.push_back(part.parent_path() / "share" / presets);
        }
    }
    append(places, dataFolders, presets);
    return places;
}

std::optional<fs::path> firstFile(const Places& places) {
    return firstThat(places, [](fs::file_status status) { return fs::is_regular_file(status); });
}

std::optional<fs::path> firstFolder(const Places& places) {
    return firstThat(places, [](fs::file_status status) { return fs::is_directory(status); });
}

std::string fileAddress(const fs::path& file) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string address = "file://";
    for (const auto character : file.string()) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlainInAddress(byte)) {
            address += character;
        } else {
            address += {'%', digits[byte / digits.size()], digits[byte % digits.size()]};
        }
    }
    return address;
}

}  // namespace quillo
