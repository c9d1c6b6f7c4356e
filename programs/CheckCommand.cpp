// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/CheckCommand.hpp"

#include <array>
#include <functional>
#include <ostream>

#include "analysis/RuleAdvice.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/ExitStatus.hpp"
#include "commandline/InputFiles.hpp"
#include "commandline/OutputFile.hpp"
#include "engine/RuleCompiler.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"
#include "words/PlainWords.hpp"
#include "words/RunWords.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 5> options{
    {{"--write", true}, {"--force", false}, {"--advice", false}, {"--unfold", false}, forceSizeOption}};

/// A preset whose reading is a fatal error to a host is to the checker only a bad preset.
ReadDocument readForChecking(const std::string& path, InputReading reading) {
    try {
        return readPresetInput(path, exitBadPreset, reading);
    } catch (const FatalError& error) {
        throw CommandFailure(exitBadPreset, escaped(path) + ": " + wordsOf(error));
    }
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
    try {
        static_cast<void>(compileRules(rules, defaultSampleRate));
    } catch (const FatalError& error) {
        throw CommandFailure(exitBadPreset, escaped(path) + ": " + wordsOf(error));
    }
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

void writeAdvice(const std::vector<Rule>& rules, std::ostream& out) {
    const auto advice = adviseOn(rules);
    out << (advice.empty() ? "\nAdvice: none.\n" : "\nAdvice:\n");
    for (const auto& piece : advice) {
        out << adviceText(rules, piece);
    }
}

void writeCurrentForm(const PluginData& data, const OutputFile& file, const std::string& path,
                      const Console& console) {
    file.write(data.write());
    console.err << escaped(path) << ": written in the current form\n";
}

}  // namespace

std::string describe(const ReadDocument& document) {
    return generation(document) + ", " + countInPlainWords(document.data);
}

int runCheckCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, options);
    if (arguments.operands().size() != 1) {
        throw UsageError("check takes one preset");
    }
    const auto target = arguments.text("--write");
    const auto& path = arguments.operands().front();
    const auto document = readForChecking(path, inputReading(arguments));
    console.out << escaped(path) << ": " << describe(document) << '\n';
    const auto& rules = document.data.rules;
    const Grouping group = arguments.has("--unfold") ? oneByOne : runsOf;
    writeRuns(rules, group, console.out, [](const RuleRun& run) { return numbers(run) + ". "; });
    writeShelf(document.data.shelf, group, console.out);
    refuseWhatCannotRun(rules, path);
    if (arguments.has("--advice")) {
        writeAdvice(rules, console.out);
    }
    if (target) {
        writeCurrentForm(document.data, OutputFile(*target, arguments.has("--force")), *target, console);
    }
    return exitSuccess;
}

}  // namespace quillo
