// SPDX-License-Identifier: GPL-3.0-or-later
// What the programs say of themselves, and what their manual pages say.
#include "hosts/jack/JackHelpText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "commandline/Arguments.hpp"
#include "hosts/jack/JackOptions.hpp"
#include "programs/HelpText.hpp"

namespace quillo {
namespace {

std::set<std::string> optionsIn(const std::string& text) {
    std::set<std::string> options;
    for (auto start = text.find("--"); start != std::string::npos; start = text.find("--", start)) {
        const auto end = std::min(text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", start), text.size());
        options.insert(text.substr(start, end - start));
        start = end;
    }
    return options;
}

/// A manual page as it is read: without the backslashes before hyphens.
std::string manual(const std::string& name) {
    std::ifstream file(QUILLO_MANUALS "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    auto page = text.str();
    std::erase(page, '\\');
    return page;
}

TEST(JackHelpText, NamesEveryOptionAndNoOther) {
    std::set<std::string> named;
    for (const auto& option : jackOptions()) {
        named.emplace(option.name);
    }
    EXPECT_EQ(optionsIn(std::string(jackHelp())), named);
}

TEST(JackHelpText, FitsATerminal) {
    std::istringstream lines{std::string(jackHelp())};
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(JackHelpText, TheManualPageNamesEveryOptionAndNoOther) {
    EXPECT_EQ(optionsIn(manual("midi-quillo-jack.1")), optionsIn(std::string(jackHelp())));
}

TEST(JackHelpText, TheOtherProgramsManualPageNamesWhatItsHelpNames) {
    auto help = std::string(generalHelp());
    for (const auto* verb : {"render", "check", "host"}) {
        help += *helpFor(verb);
    }
    for (const auto& option : optionsIn(help)) {
        EXPECT_THAT(manual("midi-quillo.1"), testing::HasSubstr(option));
    }
}

}  // namespace
}  // namespace quillo
