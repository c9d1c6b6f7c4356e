// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <ostream>
#include <utility>
#include <vector>

#include "analysis/PresetTest.hpp"
#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "platform/HexText.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "programs/JSONText.hpp"
#include "programs/PlayedFiles.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 4> testOptions{
    {{"--record", true}, {"--json", false}, {"--force", false}, forceSizeOption}};

constexpr std::uint32_t millisecondsPerSecond = 1000;

/// How a preset's test ended.
struct Result {
    std::string preset;
    std::string test;
    std::vector<Rule> rules = {};
    std::vector<Mismatch> mismatches = {};
    std::string trouble = {};  ///< why the preset or its test cannot be read; mostly empty

    [[nodiscard]] std::string word() const {
        return !trouble.empty() ? "unreadable" : mismatches.empty() ? "passed" : "different";
    }
};

std::string testBeside(const std::string& preset) {
    return std::filesystem::path(preset).replace_extension(".test").string();
}

PresetTest readTest(const std::string& path, InputReading reading) {
    try {
        return PresetTest::read(readTextInput(path, reading));
    } catch (const PresetTestError& error) {
        throw CommandFailure(exitBadData, escaped(path) + ": " + error.what());
    }
}

Result resultOf(const std::string& preset, InputReading reading) {
    Result result{preset, testBeside(preset)};
    try {
        auto probe = readProbe(preset, reading);
        result.mismatches = mismatches(readTest(result.test, reading), probe);
        result.rules = probe.rules();
    } catch (const CommandFailure& failure) {
        result.trouble = failure.what();
    }
    return result;
}

std::string bytes(const MIDIMessage& message) {
    return hexText(message.bytes(), HexCase::lower);
}

std::string wantedText(const Mismatch& mismatch) {
    return mismatch.wanted ? bytes(*mismatch.wanted) : "nothing";
}

std::string gotText(const Mismatch& mismatch, const std::vector<Rule>& rules) {
    if (!mismatch.got) {
        return "nothing";
    }
    const auto& [time, message, rule, event] = *mismatch.got;
    return bytes(message) + (rule ? ", sent by " + ruleWords(rules, *rule) : ", passed through");
}

std::string placeText(const Mismatch& mismatch) {
    const auto place = mismatch.line == 0 ? ", on load" : ", line " + std::to_string(mismatch.line);
    return place + ", at " + std::to_string(mismatch.time) + " ms";
}

void writeMismatches(const Result& result, std::ostream& out) {
    std::size_t width = 8;
    for (const auto& mismatch : result.mismatches) {
        width = std::max(width, wantedText(mismatch).size());
    }
    for (const auto& mismatch : result.mismatches) {
        out << "  " << escaped(result.test) << placeText(mismatch) << ": expected "
            << padded(wantedText(mismatch), width) << "  got " << gotText(mismatch, result.rules) << '\n';
    }
}

void writeResult(const Result& result, const Console& console) {
    if (!result.trouble.empty()) {
        console.err << "midi-quillo: " << escapedLines(result.trouble) << '\n';
        return;
    }
    console.out << escaped(result.preset) << ": " << result.word() << '\n';
    writeMismatches(result, console.out);
}

/// How many of the results are each of the three, in the order of their words' severity.
struct Counts {
    std::size_t passed = 0;
    std::size_t different = 0;
    std::size_t unreadable = 0;

    explicit Counts(const std::vector<Result>& results) {
        for (const auto& result : results) {
            auto& count = !result.trouble.empty()     ? unreadable
                          : result.mismatches.empty() ? passed
                                                      : different;
            ++count;
        }
    }

    [[nodiscard]] int status() const {
        return unreadable > 0 ? exitTrouble : different > 0 ? exitDifferent : exitSuccess;
    }
};

void writeSummary(const Counts& counts, std::ostream& out) {
    out << counts.passed << " passed, " << counts.different << " different, " << counts.unreadable
        << " could not be read\n";
}

JSONAnswer json(const Mismatch& mismatch, const std::vector<Rule>& rules) {
    JSONAnswer answer{
        {"line", mismatch.line}, {"ms", mismatch.time}, {"expected", nullptr}, {"got", nullptr}};
    if (mismatch.wanted) {
        answer["expected"] = bytes(*mismatch.wanted);
    }
    if (mismatch.got) {
        answer["got"] = bytes(mismatch.got->message);
    }
    if (mismatch.got && mismatch.got->rule) {
        answer["rule"] = jsonOfRule(*mismatch.got->rule, rules[*mismatch.got->rule].name);
    }
    return answer;
}

JSONAnswer json(const Result& result) {
    JSONAnswer answer{{"preset", result.preset}, {"test", result.test}, {"result", result.word()}};
    if (!result.trouble.empty()) {
        answer["why"] = result.trouble;
        return answer;
    }
    answer["differences"] = JSONAnswer::array();
    for (const auto& mismatch : result.mismatches) {
        answer["differences"].push_back(json(mismatch, result.rules));
    }
    return answer;
}

JSONAnswer json(const std::vector<Result>& results, const Counts& counts) {
    JSONAnswer answer{{"tests", JSONAnswer::array()},
                      {"passed", counts.passed},
                      {"different", counts.different},
                      {"unreadable", counts.unreadable}};
    for (const auto& result : results) {
        answer["tests"].push_back(json(result));
    }
    return answer;
}

int play(const Arguments& arguments, const Console& console) {
    std::vector<Result> results;
    for (const auto& preset : arguments.operands()) {
        results.push_back(resultOf(preset, inputReading(arguments)));
        if (!arguments.has("--json")) {
            writeResult(results.back(), console);
        }
    }
    const Counts counts(results);
    if (arguments.has("--json")) {
        console.out << jsonText(json(results, counts));
    } else {
        writeSummary(counts, console.out);
    }
    return counts.status();
}

int record(const Arguments& arguments, const std::string& take, const Console& console) {
    const auto& preset = arguments.operands().front();
    const auto test = testBeside(preset);
    const OutputFile target(test, arguments.has("--force"));
    auto probe = readProbe(preset, inputReading(arguments));
    const auto score = readScore(take, inputReading(arguments), millisecondsPerSecond);
    const auto events = eventsOf(score);
    const auto text = recordedTest(probe, events);
    target.write(std::vector<std::uint8_t>(text.begin(), text.end()));
    writeLeftOut(score.leftOut(), console.err);
    console.err << escaped(test) << ": " << events.size() << " events recorded\n";
    return exitSuccess;
}

}  // namespace

int runTestCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, testOptions);
    const auto take = arguments.text("--record");
    if (arguments.operands().empty()) {
        throw UsageError("test takes presets, each with its test beside it");
    }
    for (const auto& preset : arguments.operands()) {
        if (testBeside(preset) == preset) {
            throw UsageError("test takes presets, and " + escaped(preset) + " is a test");
        }
    }
    if (take && arguments.operands().size() > 1) {
        throw UsageError("test records for one preset");
    }
    if (take && arguments.has("--json")) {
        throw UsageError("test records without --json");
    }
    return runComparing([&] { return take ? record(arguments, *take, console) : play(arguments, console); });
}

}  // namespace quillo
