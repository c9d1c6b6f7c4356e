// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillo {

/// A file that could not be read or written; the text names the file and the reason.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What to do when the file is there already.
enum class Existing { keep, replace };

/// The whole file. Throws `FileError`.
[[nodiscard]] std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path);

/// Writes the file whole or not at all: whoever looks finds what was there before or all of `bytes`, and a
/// failure leaves no trace. A link is followed and stays a link; a file that is replaced keeps its mode. Throws
/// `FileError`, also when the file is there and shall be kept, and when `path` names something other than a
/// regular file or leads nowhere.
void writeWholeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                    Existing existing);

}  // namespace quillo
