// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

#include "commandline/ExitStatus.hpp"
#include "programs/CommandLine.hpp"
#include "programs/TemporaryFolder.hpp"

namespace quillo::fixture {

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

    TemporaryFolder folder;
};

}  // namespace quillo::fixture
