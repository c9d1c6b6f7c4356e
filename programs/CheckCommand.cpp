// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <array>
#include <functional>
#include <optional>
#include <ostream>
#include <vector>

#include "analysis/RuleAdvice.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "engine/RuleCompiler.hpp"
#include "platform/QuotedText.hpp"
#include "programs/JSONText.hpp"
#include "programs/PlayedFiles.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"
#include "words/PlainWords.hpp"
#include "words/RunWords.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 8> checkOptions{{{"--write", true},
                                              {"--force", false},
                                              {"--advice", false},
                                              {"--strict", false},
                                              {"--for", true},
                                              {"--unfold", false},
                                              {"--json", false},
                                              forceSizeOption}};

/// What the user asked for.
struct CheckRequest {
    std::string preset;
    std::optional<std::string> target;
    bool advice;
    bool isForVST3;  ///< what goes for VST3 alone is wanted as well
    bool strict;
    bool unfold;
    bool json;
    bool force;
    InputReading reading;
};

CheckRequest readCheckRequest(std::span<const std::string> words) {
    const Arguments arguments(words, checkOptions);
    if (arguments.operands().size() != 1) {
        throw UsageError("check takes one preset");
    }
    CheckRequest request{arguments.operands().front(), arguments.text("--write"), arguments.has("--advice"),
                         arguments.has("--for"),       arguments.has("--strict"), arguments.has("--unfold"),
                         arguments.has("--json"),      arguments.has("--force"),  inputReading(arguments)};
    if (const auto format = arguments.text("--for"); format && format != "vst3") {
        throw UsageError("option --for: " + inQuotes(*format) +
                         " is not vst3, the only format with advice of its own");
    }
    if (!request.advice && (request.strict || request.isForVST3)) {
        throw UsageError("--strict and --for go with --advice");
    }
    return request;
}

ReadDocument readForChecking(const CheckRequest& request, std::istream& standardInput) {
    return blamingPreset(request.preset, exitBadPreset, [&] {
        return readPresetInput(request.preset, exitBadPreset, request.reading, &standardInput);
    });
}

std::string generation(const ReadDocument& document) {
    if (document.form == ReadDocument::Form::current) {
        return "generation 3 (current)";
    }
    if (document.migratedRules == 0) {
        return "generation 2 (rules without names)";
    }
    if (document.migratedRules == document.data.rules.size()) {
        return "generation 1 (the oldest)";
    }
    return "generations 1 and 2 mixed (" + std::to_string(document.migratedRules) + " of the oldest)";
}

/// Rules that no program could run are as bad as a damaged preset.
void refuseWhatCannotRun(const std::vector<Rule>& rules, const std::string& path) {
    blamingPreset(path, exitBadPreset, [&] { static_cast<void>(compileRules(rules, defaultSampleRate)); });
}

/// What the editor cannot hold as the preset has it, in a line of its own under the rule.
void writeLimitsOfTheEditor(const Rule& rule, std::ostream& out) {
    if (const auto reason = whyNoEntry(rule)) {
        out << "   The editor cannot show " << inQuotes(rule.name) << ": " << *reason << ".\n";
    } else if (const auto change = whatEditingChanges(rule)) {
        out << "   Editing the message of " << inQuotes(rule.name)
            << " changes more than the editor shows: " << *change << ".\n";
    }
}

/// "3", or of a run "3-14".
std::string numbers(const RuleRun& run) {
    const auto first = std::to_string(run.first + 1);
    return run.count == 1 ? first : first + "-" + std::to_string(run.first + run.count);
}

/// How rules are grouped into lines: as runs, or one by one.
using Grouping = std::vector<RuleRun> (*)(std::span<const Rule> rules);

std::vector<RuleRun> oneByOne(std::span<const Rule> rules) {
    std::vector<RuleRun> runs;
    runs.reserve(rules.size());
    for (std::size_t first = 0; first < rules.size(); ++first) {
        runs.push_back({first});
    }
    return runs;
}

/// A line for each run, behind what `beginning` says of it: what the editor cannot hold is in none with
/// another rule.
void writeRuns(std::span<const Rule> rules, Grouping group, std::ostream& out,
               const std::function<std::string(const RuleRun&)>& beginning) {
    for (const auto& run : group(rules)) {
        out << beginning(run) << runInPlainWords(rules.subspan(run.first, run.count)) << '\n';
        writeLimitsOfTheEditor(rules[run.first], out);
    }
}

std::string placeWords(std::size_t place) {
    return place == 0 ? "  at the beginning: " : "  behind rule " + std::to_string(place) + ": ";
}

/// The rules that are switched off, those in one place together.
void writeShelf(const RuleShelf& shelf, Grouping group, std::ostream& out) {
    out << (shelf.empty() ? "" : "Switched off:\n");
    for (auto at = shelf.begin(); at != shelf.end();) {
        const auto place = at->place;
        std::vector<Rule> together;
        for (; at != shelf.end() && at->place == place; ++at) {
            together.push_back(at->rule);
        }
        writeRuns(together, group, out, [place](const RuleRun& /*run*/) { return placeWords(place); });
    }
}

bool isOfVST3(const Advice& advice) {
    using enum Advice::Kind;
    return advice.kind == notInVST3 || advice.kind == tooLongForVST3;
}

/// What is said of a format alone, only where somebody asks for it.
std::vector<Advice> adviceFor(const std::vector<Rule>& rules, const CheckRequest& request) {
    auto advice = request.advice ? adviseOn(rules) : std::vector<Advice>();
    if (!request.isForVST3) {
        std::erase_if(advice, isOfVST3);
    }
    return advice;
}

void writeRules(const PluginData& data, const CheckRequest& request, std::ostream& out) {
    const Grouping group = request.unfold ? oneByOne : runsOf;
    writeRuns(data.rules, group, out, [](const RuleRun& run) { return numbers(run) + ". "; });
    writeShelf(data.shelf, group, out);
}

void writeAdvice(const std::vector<Rule>& rules, const std::vector<Advice>& advice, std::ostream& out) {
    out << (advice.empty() ? "\nAdvice: none.\n" : "\nAdvice:\n");
    for (const auto& piece : advice) {
        out << adviceText(rules, piece);
    }
}

void writeCurrentForm(const PluginData& data, const CheckRequest& request, const Console& console) {
    const OutputFile file(*request.target, request.force, &console.out);
    file.write(data.write());
    if (request.target != standardStream) {
        console.err << escaped(*request.target) << ": written in the current form\n";
    }
}

int statusOf(const std::vector<Advice>& advice, const CheckRequest& request) {
    return request.strict && !advice.empty() ? exitAdvice : exitSuccess;
}

int checkInWords(const CheckRequest& request, const Console& console) {
    const auto document = readForChecking(request, console.in);
    auto& out = streamOfWords(request.target.value_or(""), console);
    out << inputName(request.preset) << ": " << describe(document) << '\n';
    writeRules(document.data, request, out);
    refuseWhatCannotRun(document.data.rules, request.preset);
    const auto advice = adviceFor(document.data.rules, request);
    if (request.advice) {
        writeAdvice(document.data.rules, advice, out);
    }
    if (request.target) {
        writeCurrentForm(document.data, request, console);
    }
    return statusOf(advice, request);
}

JSONAnswer json(const Rule& rule, std::size_t position) {
    auto answer = jsonOfRule(position, rule.name);
    answer["words"] = inPlainWords(rule);
    return answer;
}

JSONAnswer json(const Advice& advice, const std::vector<Rule>& rules) {
    auto answer = jsonOfRule(advice.rule, rules[advice.rule].name);
    answer["count"] = advice.count;
    answer["matter"] = advice.matter;
    answer["wayOut"] = advice.wayOut;
    return answer;
}

JSONAnswer json(const PluginData& data) {
    JSONAnswer answer{{"rules", JSONAnswer::array()}, {"switchedOff", jsonOfShelf(data.shelf)}};
    for (std::size_t position = 0; position < data.rules.size(); ++position) {
        answer["rules"].push_back(json(data.rules[position], position));
    }
    return answer;
}

/// The answer grows as far as the preset is right.
int fillAnswer(JSONAnswer& answer, const CheckRequest& request, const Console& console) {
    const auto document = readForChecking(request, console.in);
    const auto& rules = document.data.rules;
    answer["generation"] = generation(document);
    answer.update(json(document.data));
    refuseWhatCannotRun(rules, request.preset);
    const auto advice = adviceFor(rules, request);
    if (request.advice) {
        answer["advice"] = JSONAnswer::array();
    }
    for (const auto& piece : advice) {
        answer["advice"].push_back(json(piece, rules));
    }
    if (request.target) {
        writeCurrentForm(document.data, request, console);
    }
    return statusOf(advice, request);
}

/// Also a preset that is bad has an answer.
int checkForScripts(const CheckRequest& request, const Console& console) {
    JSONAnswer answer{{"preset", request.preset}};
    auto status = exitBadPreset;
    try {
        status = fillAnswer(answer, request, console);
    } catch (const CommandFailure& failure) {
        if (failure.status() != exitBadPreset) {
            throw;
        }
        answer["error"] = failure.what();
    }
    streamOfWords(request.target.value_or(""), console) << jsonText(answer);
    return status;
}

}  // namespace

std::string describe(const ReadDocument& document) {
    return generation(document) + ", " + countInPlainWords(document.data);
}

int runCheckCommand(std::span<const std::string> words, const Console& console) {
    const auto request = readCheckRequest(words);
    return request.json ? checkForScripts(request, console) : checkInWords(request, console);
}

}  // namespace quillo
