// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/GuideLocation.hpp"

#include <algorithm>
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

}  // namespace

std::vector<std::filesystem::path> guidePlaces(const std::filesystem::path& binary,
                                               const std::filesystem::path& userData) {
    std::vector<std::filesystem::path> places;
    for (auto folder = binary.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        places.push_back(folder / "share" / documentation / page);
        places.push_back(folder / "guide" / page);
    }
    if (!userData.empty()) {
        places.push_back(userData / documentation / page);
    }
    places.push_back(std::filesystem::path(QUILLO_DATA_FOLDER) / documentation / page);
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
