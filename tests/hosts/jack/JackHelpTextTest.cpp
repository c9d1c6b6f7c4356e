// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackHelpText.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "hosts/jack/JackOptions.hpp"

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

}  // namespace
}  // namespace quillo
