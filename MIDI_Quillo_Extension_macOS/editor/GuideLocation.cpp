// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/GuideLocation.hpp"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace quillo {

namespace {

const std::filesystem::path page = "index.html";
const std::filesystem::path documentation = "doc/midi-quillo/guide";

bool isPlainInAddress(unsigned char byte) {
    constexpr std::string_view marks = "/-._~";
    const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return letter || (byte >= '0' && byte <= '9') ||
           marks.find(static_cast<char>(byte)) != std::string_view::npos;
}

/// A variable that is empty counts as not set.
std::string valueOr(const char* variable, const std::string& otherwise) {
    return variable != nullptr && *variable != '\0' ? variable : otherwise;
}

}  // namespace

std::vector<std::filesystem::path> dataFolders(const char* xdgDataHome, const char* home,
                                               const char* xdgDataDirs) {
    std::istringstream list(valueOr(xdgDataHome, valueOr(home, ".") + "/.local/share") + ":" +
                            valueOr(xdgDataDirs, "/usr/local/share:/usr/share") + ":" + QUILLO_DATA_FOLDER);
    std::vector<std::filesystem::path> folders;
    for (std::string folder; std::getline(list, folder, ':');) {
        if (std::filesystem::path(folder).is_absolute()) {
            folders.emplace_back(folder);
        }
    }
    return folders;
}

std::vector<std::filesystem::path> guidePlaces(const std::filesystem::path& binary,
                                               const std::vector<std::filesystem::path>& dataFolders) {
    const auto folder = binary.parent_path();
    std::vector<std::filesystem::path> places{folder / "guide" / page};
    if (folder.filename() == "bin") {
        places.push_back(folder.parent_path() / "share" / documentation / page);
    }
    for (const auto& data : dataFolders) {
        places.push_back(data / documentation / page);
    }
    return places;
}

std::optional<std::filesystem::path> firstThere(const std::vector<std::filesystem::path>& places) {
    const auto found = std::ranges::find_if(places, [](const auto& place) {
        std::error_code ignored;
        return std::filesystem::is_regular_file(place, ignored);
    });
    return found != places.end() ? std::optional(*found) : std::nullopt;
}

std::string fileAddress(const std::filesystem::path& file) {
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
