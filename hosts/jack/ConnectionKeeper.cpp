// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ConnectionKeeper.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "hosts/cli/CommandFailure.hpp"

namespace quillo {

namespace {

std::vector<std::regex> compile(const char* option, const std::vector<std::string>& patterns) {
    std::vector<std::regex> compiled;
    for (const auto& pattern : patterns) {
        try {
            compiled.emplace_back(pattern, std::regex::extended);
        } catch (const std::regex_error& error) {
            throw UsageError(std::string("option ") + option + ": \"" + pattern +
                             "\" is not a regular expression: " + error.what());
        }
    }
    return compiled;
}

bool matches(const std::vector<std::regex>& patterns, const std::string& name) {
    return std::ranges::any_of(patterns,
                               [&](const std::regex& pattern) { return std::regex_search(name, pattern); });
}

std::set<std::string> asSet(std::vector<std::string> names) {
    return {std::make_move_iterator(names.begin()), std::make_move_iterator(names.end())};
}

}  // namespace

ConnectionKeeper::ConnectionKeeper(const std::vector<std::string>& connectIn,
                                   const std::vector<std::string>& connectOut)
    : sources_{compile("--connect-in", connectIn), {}}, targets_{compile("--connect-out", connectOut), {}} {}

void ConnectionKeeper::remember(std::vector<std::string> sources, std::vector<std::string> targets) {
    sources_.remembered = asSet(std::move(sources));
    targets_.remembered = asSet(std::move(targets));
}

bool ConnectionKeeper::takes(const PortDescription& port) {
    if (port.isOurs) {
        return false;
    }
    auto& side = port.givesMIDI ? sources_ : targets_;
    const bool wasConnected = side.remembered.erase(port.name) > 0;
    return wasConnected || matches(side.patterns, port.name) ||
           std::ranges::any_of(port.aliases,
                               [&](const std::string& alias) { return matches(side.patterns, alias); });
}

}  // namespace quillo
