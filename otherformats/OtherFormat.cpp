// SPDX-License-Identifier: GPL-3.0-or-later
#include "otherformats/OtherFormat.hpp"

#include <algorithm>

#include "otherformats/Mapping.hpp"
#include "platform/PlainText.hpp"

namespace quillo {

namespace {

/// Bytes in which the first line that means something ends.
constexpr std::size_t longestBeginning = std::size_t{1} << 20U;

std::string rulesWords(const TakenLine& line) {
    if (line.isOff) {
        return countWords(line.count, "rule") + ", switched off";
    }
    const auto first = std::to_string(line.firstRule + 1);
    return line.count == 1 ? "rule " + first
                           : "rules " + first + " to " + std::to_string(line.firstRule + line.count);
}

std::string lineText(const TakenLine& line) {
    auto text = "line " + std::to_string(line.line) + ": ";
    if (line.count > 0) {
        text += (line.lost.empty() ? "taken as " : "taken in part as ") + rulesWords(line);
    } else {
        text += "left out";
    }
    for (std::size_t i = 0; i < line.lost.size(); ++i) {
        text += (i == 0 ? ": " : "; ") + line.lost[i];
    }
    return text + "\n";
}

bool isTaken(const TakenLine& line) {
    return line.count > 0;
}

bool isWhole(const TakenLine& line) {
    return line.lost.empty() && isTaken(line);
}

}  // namespace

bool isOtherFormat(std::string_view text) {
    const auto beginning = text.substr(0, longestBeginning);
    return isMidimap(beginning) || isBmtp(beginning);
}

OtherRules readOtherFormat(std::string_view text, Unmatched unmatched) {
    if (!isOtherFormat(text)) {
        throw OtherFormatError(
            1, "the text is neither a midimap.lv2 configuration, which begins with midimap v1, "
               "nor a .bmtp project, which begins with [Project]");
    }
    if (isMidimap(text)) {
        return rulesFrom(readMidimap(text));
    }
    auto file = readBmtp(text);
    file.passesUnmatched = unmatched == Unmatched::pass;
    return rulesFrom(file);
}

std::string takenText(const OtherRules& taken) {
    std::string text;
    for (const auto& line : taken.lines) {
        text += lineText(line);
    }
    const auto all = taken.lines.size();
    const auto some = static_cast<std::size_t>(std::ranges::count_if(taken.lines, isTaken));
    const auto whole = static_cast<std::size_t>(std::ranges::count_if(taken.lines, isWhole));
    return text + countWords(some, "line") + " taken, " + std::to_string(some - whole) +
           " of them in part; " + std::to_string(all - some) + " left out. " +
           countWords(taken.rules.size() + taken.shelf.size(), "rule") + ".\n";
}

std::string lostText(const OtherRules& taken) {
    std::string text;
    for (const auto& line : taken.lines) {
        text += isWhole(line) ? "" : lineText(line);
    }
    return text;
}

}  // namespace quillo
