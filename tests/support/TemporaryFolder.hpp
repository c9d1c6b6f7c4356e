// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include <stdlib.h>

namespace quillo {

/// A folder of the test's own, taken away with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() : path_(make()) {}
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path operator/(const char* name) const { return path_ / name; }

private:
    static std::filesystem::path make() {
        auto name = (std::filesystem::temp_directory_path() / "midi-quillo-test.XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::filesystem::filesystem_error("no temporary folder", name,
                                                    std::error_code(errno, std::generic_category()));
        }
        return name;
    }

    std::filesystem::path path_;
};

}  // namespace quillo
