// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// A text that is not what it begins as: "line 3: ...".
class OtherFormatError : public std::runtime_error {
public:
    OtherFormatError(std::size_t line, const std::string& problem)
        : std::runtime_error("line " + std::to_string(line) + ": " + problem) {}
};

/// What became of a line of the file.
struct TakenLine {
    std::size_t line = 0;           ///< counted from 1
    std::size_t firstRule = 0;      ///< among those that run, or those that are switched off
    std::size_t count = 0;          ///< of its rules; 0 where it was left out
    bool isOff = false;             ///< its rules are switched off
    std::vector<std::string> lost;  ///< what of it could not be taken, and why

    bool operator==(const TakenLine&) const = default;
};

/// The rules that another tool's file means.
struct OtherRules {
    std::vector<Rule> rules;
    RuleShelf shelf;
    std::vector<TakenLine> lines;  ///< those that mean something, in their order

    [[nodiscard]] bool isEmpty() const { return rules.empty() && shelf.empty(); }
};

/// Whether the text begins as a file of another tool that can be read.
[[nodiscard]] bool isOtherFormat(std::string_view text);

/// What becomes of messages that no line matches, where the file does not say so itself.
enum class Unmatched { pass, drop };

/// Reads such a text: a midimap.lv2 configuration, or a `.bmtp` project. What rules cannot say is left out,
/// and named. Throws an `OtherFormatError` for a text of neither kind, and for one that is damaged.
[[nodiscard]] OtherRules readOtherFormat(std::string_view text, Unmatched unmatched = Unmatched::pass);

/// A line for each line of the file, and a sum:
///
///     line 4: taken as rule 1
///     line 7: taken in part as rules 2 to 13: pitch bend cannot be waited for
///     line 9: left out: it looks at the velocity, which no rule does
///     2 lines taken, 1 of them in part; 1 left out. 13 rules.
[[nodiscard]] std::string takenText(const OtherRules& taken);

/// The lines of that which were not taken whole. Empty where everything was.
[[nodiscard]] std::string lostText(const OtherRules& taken);

}  // namespace quillo
