// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

/// A file that could not be read or written; the text names the file and the reason.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    FileError(const std::filesystem::path& path, const std::string& reason);

    /// The rest of a sentence that begins with the file: `cannot be read: it is larger than 64 MiB`. Empty
    /// where the file and the reason were not given apart.
    [[nodiscard]] const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

/// A file that holds more bytes than its reader takes.
class FileTooLarge : public FileError {
public:
    using FileError::FileError;
};

/// What to do when the file is there already.
enum class Existing { keep, replace };

/// As many bytes as are read of a file unless its reader says otherwise: far more than any preset has.
inline constexpr std::uint64_t usualSizeLimit = 64UL * 1024 * 1024;

/// The whole file, which may be a pipe or a device as well: then this waits for the writer, until the
/// end. Throws `FileError`, and `FileTooLarge` as soon as there are more than `most` bytes.
[[nodiscard]] std::vector<std::uint8_t> readWholeFile(const std::filesystem::path& path,
                                                      std::uint64_t most = usualSizeLimit);

/// The same of a regular file only. Never waits: anything else at `path` is a `FileError`. For a
/// program with a window, or inside a host.
[[nodiscard]] std::vector<std::uint8_t> readRegularFile(const std::filesystem::path& path,
                                                        std::uint64_t most = usualSizeLimit);

/// Writes the file whole or not at all: a reader finds what was there before or all of `bytes`, and a
/// failure leaves no trace. What is written outlasts a loss of power. A link is followed and stays a link; a
/// file that is replaced keeps its mode and, where the process may give them away, its owner and group.
/// Throws `FileError`, also when the file exists and is to be kept, and when `path` names something other
/// than a regular file or leads nowhere.
void writeWholeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                    Existing existing);

/// Whether a file of this name can be one that `writeWholeFile` has begun to write for one called `target`:
/// it stays behind where a process is killed meanwhile. Of a name that leaves no room behind it, this is not
/// known. Names without their folders.
[[nodiscard]] bool isUnfinished(std::string_view name, std::string_view target);

/// Waits until the disk knows the names in a folder, after a file there got or changed its own. A file system
/// without such a promise is let be.
void makeNamesDurable(const std::filesystem::path& folder);

}  // namespace quillo
