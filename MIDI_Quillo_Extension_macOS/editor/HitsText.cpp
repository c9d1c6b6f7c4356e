// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/HitsText.hpp"

#include <cstdint>

#include "editor/DecimalText.hpp"

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

}  // namespace

std::string hitsText(const RuleHits& hits) {
    if (hits.count == 0) {
        return "never fired since load";
    }
    return withCommas(hits.count) + " \u00d7 \u00b7 " + ago(hits.secondsAgo);
}

}  // namespace quillo
