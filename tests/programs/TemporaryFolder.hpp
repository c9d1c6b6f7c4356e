// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/AtomicFile.hpp"

namespace quillo::fixture {

/// A new, empty folder that goes away with this object, and files in it by their names.
class TemporaryFolder {
public:
    TemporaryFolder() : path_(std::filesystem::temp_directory_path() / "midi-quillo-XXXXXX") {
        auto name = path_.string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const { return (path_ / name).string(); }

    /// Writes a file and returns its path.
    [[nodiscard]] std::string with(const std::string& name, std::span<const std::uint8_t> bytes) const {
        writeWholeFile(path_ / name, bytes, Existing::replace);
        return path_ / name;
    }
    [[nodiscard]] std::string with(const std::string& name, const std::string& text) const {
        return with(name, std::vector<std::uint8_t>(text.begin(), text.end()));
    }

    [[nodiscard]] std::vector<std::uint8_t> read(const std::string& name) const {
        return readWholeFile(path_ / name);
    }

    [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

    [[nodiscard]] std::size_t fileCount() const {
        const std::filesystem::directory_iterator files(path_);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::filesystem::path path_;
};

}  // namespace quillo::fixture
