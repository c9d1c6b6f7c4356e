// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <array>
#include <cstddef>
#include <ostream>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EngineProbe.hpp"
#include "analysis/EventExplanation.hpp"
#include "analysis/ExplanationText.hpp"
#include "analysis/RuleReasons.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "platform/HexText.hpp"
#include "platform/QuotedText.hpp"
#include "programs/JSONText.hpp"
#include "programs/PlayedFiles.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 3> explainOptions{{{"--preset", true}, {"--json", false}, forceSizeOption}};

/// All events, so that nothing is explained when one of them is wrong.
std::vector<AskedEvent> readEvents(const std::vector<std::string>& texts) {
    if (texts.empty()) {
        throw UsageError("explain needs an event to explain\n" + std::string(askedEventForms));
    }
    std::vector<AskedEvent> events;
    for (const auto& text : texts) {
        try {
            events.push_back(parseAskedEvent(text));
        } catch (const AskedEventError& error) {
            throw UsageError("event " + std::to_string(events.size() + 1) + ", " + inQuotes(text) + ": " +
                             error.what() + "\n" + std::string(askedEventForms));
        }
    }
    return events;
}

JSONAnswer json(const RuleReason& reason, const RuleAccount& account, const Rule& rule,
                std::size_t position) {
    auto answer = jsonOfRule(position, rule.name);
    answer["verdict"] = reason.verdict;
    answer["why"] = reason.words;
    if (reason.fired) {
        answer["afterMs"] = account.delay;
        answer["sent"] = JSONAnswer::array();
    }
    for (const auto& message : account.messages) {
        answer["sent"].push_back(hexText(message.bytes(), HexCase::lower));
    }
    return answer;
}

JSONAnswer json(const std::vector<Rule>& rules, const AskedEvent& event,
                const EventExplanation& explanation) {
    JSONAnswer answer{{"event", eventWords(event)},
                      {"forwarded", explanation.forwarded},
                      {"consumedByRule", nullptr},
                      {"rules", JSONAnswer::array()}};
    if (explanation.consumer) {
        answer["consumedByRule"] = *explanation.consumer + 1;
    }
    const auto reasons = ruleReasons(rules, event, explanation);
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        answer["rules"].push_back(json(reasons[rule], explanation.rules[rule], rules[rule], rule));
    }
    return answer;
}

void explainForScripts(const EngineProbe& probe, const std::vector<AskedEvent>& events,
                       const RuleShelf& shelf, std::ostream& out) {
    JSONAnswer answer{{"events", JSONAnswer::array()}, {"switchedOff", jsonOfShelf(shelf)}};
    for (const auto& event : events) {
        answer["events"].push_back(json(probe.rules(), event, explain(probe, event)));
    }
    out << jsonText(answer);
}

void explainInWords(const EngineProbe& probe, const std::vector<AskedEvent>& events, const RuleShelf& shelf,
                    std::ostream& out) {
    const char* separator = "";
    for (const auto& event : events) {
        out << separator << explanationText(probe.rules(), event, explain(probe, event), shelf);
        separator = "\n";
    }
}

}  // namespace

int runExplainCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, explainOptions);
    const auto preset = arguments.text("--preset");
    if (!preset) {
        throw UsageError("explain needs a preset: --preset PRESET.json");
    }
    const auto events = readEvents(arguments.operands());
    return blamingPreset(*preset, exitBadData, [&] {
        const auto [rules, shelf] =
            readPresetInput(*preset, exitBadData, inputReading(arguments), &console.in).data;
        EngineProbe probe(rules);
        if (arguments.has("--json")) {
            explainForScripts(probe, events, shelf, console.out);
        } else {
            explainInWords(probe, events, shelf, console.out);
        }
        return exitSuccess;
    });
}

}  // namespace quillo
