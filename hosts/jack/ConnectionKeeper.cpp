// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ConnectionKeeper.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "commandline/CommandFailure.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

std::vector<PortPattern> compile(const char* option, const std::vector<std::string>& texts) {
    std::vector<PortPattern> patterns;
    for (const auto& text : texts) {
        if (text.empty()) {
            throw UsageError(std::string("option ") + option +
                             ": the pattern is empty; \".*\" matches every port");
        }
        try {
            patterns.emplace_back(text);
        } catch (const std::invalid_argument& error) {
            throw UsageError(std::string("option ") + option + ": " + inQuotes(text) +
                             " is not a regular expression: " + error.what());
        }
    }
    return patterns;
}

void addTo(std::set<std::string>& set, std::vector<std::string> names) {
    set.insert(std::make_move_iterator(names.begin()), std::make_move_iterator(names.end()));
}

}  // namespace

ConnectionKeeper::ConnectionKeeper(const std::vector<std::string>& connectIn,
                                   const std::vector<std::string>& connectOut)
    : sources_{compile("--connect-in", connectIn), {}}, targets_{compile("--connect-out", connectOut), {}} {}

void ConnectionKeeper::remember(std::vector<std::string> sources, std::vector<std::string> targets) {
    addTo(sources_.remembered, std::move(sources));
    addTo(targets_.remembered, std::move(targets));
}

void ConnectionKeeper::forget() {
    sources_.remembered.clear();
    targets_.remembered.clear();
}

bool ConnectionKeeper::takes(const PortDescription& port) {
    if (port.isOurs) {
        return false;
    }
    auto& side = port.givesMIDI ? sources_ : targets_;
    const bool wasConnected = side.remembered.erase(port.name) > 0;
    return wasConnected || std::ranges::any_of(side.patterns, [&](const PortPattern& pattern) {
               return pattern.matches(port);
           });
}

}  // namespace quillo
