// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "commandline/CommandFailure.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/Data.hpp"
#include "programs/CommandLine.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo::fixture {

/// A folder of the test's own, and files in it by their names.
class FolderOfFiles {
public:
    [[nodiscard]] std::string operator/(const std::string& name) const { return folder_.path() / name; }

    /// Writes a file and returns its path.
    [[nodiscard]] std::string with(const std::string& name, std::span<const std::uint8_t> bytes) const {
        writeWholeFile(*this / name, bytes, Existing::replace);
        return *this / name;
    }
    [[nodiscard]] std::string with(const std::string& name, const std::string& text) const {
        return with(name, Data(text.begin(), text.end()));
    }

    [[nodiscard]] Data read(const std::string& name) const { return readWholeFile(*this / name); }
    [[nodiscard]] std::string readText(const std::string& name) const {
        const auto bytes = read(name);
        return {bytes.begin(), bytes.end()};
    }
    [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(*this / name); }

    [[nodiscard]] std::size_t fileCount() const {
        const std::filesystem::directory_iterator files(folder_.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    TemporaryFolder folder_;
};

/// Runs the program in this process, in a folder of its own.
class CommandLineTest : public ::testing::Test {
protected:
    /// How a run ended, and what it wrote.
    struct Run {
        int status;
        std::string out;
        std::string err;
    };

    static Run run(const std::vector<std::string>& words, const std::string& input = {}) {
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream err;
        const auto status = runCommandLine(words, Console{in, out, err});
        return {status, out.str(), err.str()};
    }

    FolderOfFiles folder;
};

}  // namespace quillo::fixture
