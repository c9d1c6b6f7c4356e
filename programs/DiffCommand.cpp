// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <array>
#include <ostream>
#include <vector>

#include "analysis/Comparison.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "platform/QuotedText.hpp"
#include "programs/DiffText.hpp"
#include "programs/JSONText.hpp"
#include "programs/PlayedFiles.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 3> diffOptions{{{"--with", true}, {"--json", false}, forceSizeOption}};

constexpr std::uint32_t microsecondsPerSecond = 1'000'000;

std::vector<AskedEvent> withoutTimes(const std::vector<TimedEvent>& timed) {
    std::vector<AskedEvent> events;
    events.reserve(timed.size());
    for (const auto& [time, event] : timed) {
        events.push_back(event);
    }
    return events;
}

std::string headText(const std::vector<std::string>& presets, const std::string& take,
                     const PlayedTwice& played) {
    const auto count = played.comparison.differences.size();
    return "A: " + escaped(presets[0]) + "\nB: " + escaped(presets[1]) + "\n" + escaped(take) + ": " +
           std::to_string(played.events.size()) + " events, " +
           (count == 0 ? "no difference"
                       : std::to_string(count) + (count == 1 ? " makes" : " make") + " a difference") +
           "\n";
}

int compareWith(const std::string& take, const Arguments& arguments, const Console& console) {
    const auto reading = inputReading(arguments);
    auto first = readProbe(arguments.operands()[0], reading);
    auto second = readProbe(arguments.operands()[1], reading);
    const auto score = readScore(take, reading, microsecondsPerSecond);
    const auto events = eventsOf(score);
    const auto comparison = compare(first, second, withoutTimes(events));
    const PlayedTwice played{first, second, events, comparison};
    writeLeftOut(score.leftOut(), console.err);
    if (arguments.has("--json")) {
        console.out << jsonText(diffAnswer(played));
    } else {
        const auto text = diffText(played);
        console.out << headText(arguments.operands(), take, played) << (text.empty() ? "" : "\n") << text;
    }
    return comparison.differences.empty() ? exitSuccess : exitDifferent;
}

}  // namespace

int runDiffCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, diffOptions);
    const auto take = arguments.text("--with");
    if (arguments.operands().size() != 2 || !take) {
        throw UsageError("diff takes two presets and a recording: A.json B.json --with TAKE.mid");
    }
    return runComparing([&] { return compareWith(*take, arguments, console); });
}

}  // namespace quillo
