// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/LiveTexts.hpp"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "editor/DecimalText.hpp"
#include "platform/HexText.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

std::string ago(double seconds) {
    constexpr double minute = 60;
    constexpr double hour = 60 * minute;
    constexpr double day = 24 * hour;
    const auto in = [seconds](double unit, const char* name) {
        return std::to_string(static_cast<std::uint64_t>(seconds / unit)) + name;
    };
    if (seconds < 1) {
        return "now";
    }
    if (seconds < minute) {
        return in(1, " s ago");
    }
    if (seconds < hour) {
        return in(minute, " min ago");
    }
    return seconds < day ? in(hour, " h ago") : in(day, " d ago");
}

/// Whole numbers of `unit`, and so many digits behind the point.
std::string rounded(double seconds, double unit, int digits, const char* name) {
    const auto scale = std::pow(10.0, digits);
    const auto parts = static_cast<std::uint64_t>(seconds / unit * scale);
    auto text = std::to_string(parts / static_cast<std::uint64_t>(scale));
    if (digits > 0) {
        const auto rest = std::to_string(parts % static_cast<std::uint64_t>(scale));
        text += '.';
        text.append(static_cast<std::size_t>(digits) - rest.size(), '0');
        text += rest;
    }
    return text + " " + name;
}

}  // namespace

std::string hitsText(const RuleHits& hits) {
    if (hits.count == 0) {
        return "never fired since load";
    }
    return withCommas(hits.count) + " \u00d7 \u00b7 " + ago(hits.secondsAgo);
}

std::string timeToGo(double seconds) {
    constexpr double minute = 60;
    constexpr double hour = 60 * minute;
    constexpr double day = 24 * hour;
    if (seconds < 10) {
        return rounded(seconds, 1, 2, "s");
    }
    if (seconds < 100) {
        return rounded(seconds, 1, 1, "s");
    }
    if (seconds < 10 * minute) {
        return rounded(seconds, 1, 0, "s");
    }
    if (seconds < 100 * minute) {
        return rounded(seconds, minute, 0, "min");
    }
    return seconds < 100 * hour ? rounded(seconds, hour, 0, "h") : rounded(seconds, day, 0, "d");
}

std::string waitingBytes(const WaitingOutput& output) {
    std::string bytes;
    for (const auto& message : output.messages.messages()) {
        bytes += bytes.empty() ? "" : ", ";
        bytes += hexText(message.bytes(), HexCase::lower);
    }
    return bytes;
}

std::string waitingText(const WaitingOutput& output) {
    const auto text = timeToGo(output.secondsToGo) + " " + waitingBytes(output);
    return output.ruleName.empty() ? text : text + " " + escaped(output.ruleName);
}

}  // namespace quillo
