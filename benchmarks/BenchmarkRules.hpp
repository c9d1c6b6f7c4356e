// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo::bench {

/// How many rules, or other things, there are in the rows of the table.
using Counts = std::vector<std::size_t>;

/// The events' channel value; the rules that are to match none are on channel values 0 to 7.
inline constexpr std::uint8_t eventChannel = 8;

/// Note-on rules, each for one note on one channel, none of which matches an event on `eventChannel`.
[[nodiscard]] std::vector<Rule> rulesThatMatchNothing(std::size_t count);

/// The same, but for the rule in the middle, which matches every event of `middleNote`.
[[nodiscard]] std::vector<Rule> rulesOfWhichTheMiddleMatches(std::size_t count);
inline constexpr std::uint8_t middleNote = 60;

/// Rules that match every note-on of any channel; the first one consumes it, or none does.
[[nodiscard]] std::vector<Rule> wildcardRules(std::size_t count, PassThroughV2 policy);

/// Rules for one controller on any channel, each for another of its values, so that none can be left out by
/// controller or channel. None matches an event of the value `otherValue`.
[[nodiscard]] std::vector<Rule> rulesOfOneController(std::size_t count);
inline constexpr std::uint8_t sharedController = 1;
inline constexpr std::uint8_t otherValue = 127;

/// Rules for every note-on, and rules for single notes of single channels spread among them.
[[nodiscard]] std::vector<Rule> wildcardAndSingleRules(std::size_t wildcards, std::size_t singles);

/// Rules for single values of every controller of every channel.
[[nodiscard]] std::vector<Rule> rulesOfEveryController(std::size_t count);

/// Rules of all kinds, with names and delays, as a musician may have them.
[[nodiscard]] std::vector<Rule> mixedRules(std::size_t count);

}  // namespace quillo::bench
