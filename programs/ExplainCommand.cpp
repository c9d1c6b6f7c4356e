// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/ExplainCommand.hpp"

#include <array>
#include <ostream>
#include <utility>
#include <vector>

#include "analysis/AskedEventParser.hpp"
#include "analysis/EngineProbe.hpp"
#include "analysis/EventExplanation.hpp"
#include "analysis/ExplanationText.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/ExitStatus.hpp"
#include "commandline/InputFiles.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 2> options{{{"--preset", true}, forceSizeOption}};

std::string forms() {
    return std::string(askedEventForms.substr(0, askedEventForms.size() - 1));
}

/// All events, so that nothing is explained when one of them is none.
std::vector<AskedEvent> readEvents(const std::vector<std::string>& texts) {
    if (texts.empty()) {
        throw UsageError("explain needs an event to explain\n" + forms());
    }
    std::vector<AskedEvent> events;
    for (const auto& text : texts) {
        try {
            events.push_back(parseAskedEvent(text));
        } catch (const AskedEventError& error) {
            throw UsageError("event " + std::to_string(events.size() + 1) + ", " + inQuotes(text) + ": " +
                             error.what() + "\n" + forms());
        }
    }
    return events;
}

}  // namespace

int runExplainCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, options);
    const auto preset = arguments.text("--preset");
    if (!preset) {
        throw UsageError("explain needs a preset: --preset PRESET.json");
    }
    const auto events = readEvents(arguments.operands());
    auto [rules, shelf] = readPresetInput(*preset, exitBadData, inputReading(arguments)).data;
    EngineProbe probe(std::move(rules));
    const char* separator = "";
    for (const auto& event : events) {
        console.out << separator << explanationText(probe.rules(), event, explain(probe, event), shelf);
        separator = "\n";
    }
    return exitSuccess;
}

}  // namespace quillo
