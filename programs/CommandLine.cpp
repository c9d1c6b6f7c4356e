// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/CommandLine.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string_view>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "persistence/DocumentSchema.hpp"
#include "platform/QuotedText.hpp"
#include "programs/Commands.hpp"
#include "programs/HelpText.hpp"

namespace quillo {

namespace {

constexpr std::string_view helpOption = "--help";

struct Verb {
    std::string_view name;
    int (*run)(std::span<const std::string> words, const Console& console);
};

/// The verb `host`: a script from a file or from standard input.
int runHostVerb(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, {});
    const auto& operands = arguments.operands();
    if (operands.size() > 1) {
        throw UsageError("host takes one script");
    }
    if (operands.empty()) {
        return runHostCommand(console.in, console.out, console.err);
    }
    std::ifstream script(operands.front(), std::ios::binary);
    std::error_code ignored;
    if (!script || std::filesystem::is_directory(operands.front(), ignored)) {  // which some libraries open
        throw CommandFailure(exitNoInput, escaped(operands.front()) + ": cannot be opened");
    }
    return runHostCommand(script, console.out, console.err);
}

/// The verb `schema`: what presets look like, for programs that make or check them.
int runSchemaVerb(std::span<const std::string> words, const Console& console) {
    if (!Arguments(words, {}).operands().empty()) {
        throw UsageError("schema takes no arguments");
    }
    console.out << documentSchema();
    return exitSuccess;
}

constexpr std::array verbs{
    Verb{"render", &runRenderCommand}, Verb{"check", &runCheckCommand},   Verb{"explain", &runExplainCommand},
    Verb{"diff", &runDiffCommand},     Verb{"test", &runTestCommand},     Verb{"presets", &runPresetsCommand},
    Verb{"schema", &runSchemaVerb},    Verb{"import", &runImportCommand}, Verb{"host", &runHostVerb},
};

const Verb& verbCalled(const std::string& name) {
    const auto* found = std::ranges::find(verbs, name, &Verb::name);
    if (found == verbs.end()) {
        throw UsageError("there is no verb " + inQuotes(name));
    }
    return *found;
}

int help(std::span<const std::string> verb, const Console& console) {
    if (verb.empty()) {
        console.out << usageOf({}) << '\n' << generalHelp();
        return exitSuccess;
    }
    const auto text = helpFor(verb.front());
    if (!text) {
        throw UsageError("there is no verb " + inQuotes(verb.front()));
    }
    console.out << usageOf(verb.front()) << '\n' << *text;
    return exitSuccess;
}

int run(std::span<const std::string> words, const Console& console) {
    if (words.empty()) {
        throw UsageError("no verb given");
    }
    const auto& first = words.front();
    const auto behind = words.subspan(1);
    if (first == helpOption || first == "help") {
        return help(behind, console);
    }
    if (first == "--version") {
        console.out << "midi-quillo " QUILLO_VERSION "\n";
        return exitSuccess;
    }
    const auto& verb = verbCalled(first);
    if (std::ranges::find(behind, helpOption) != behind.end()) {
        return help(words.first(1), console);
    }
    return verb.run(behind, console);
}

}  // namespace

int runCommandLine(std::span<const std::string> words, const Console& console) {
    const auto command = [&] {
        const auto status = run(words, console);
        if (!console.out.flush()) {
            throw CommandFailure(exitCannotCreate, "standard output cannot be written");
        }
        return status;
    };
    const auto teach = [&] {
        const auto verb = words.empty() ? std::string_view() : std::string_view(words.front());
        console.err << usageOf(verb) << "Try: midi-quillo help" << (helpFor(verb) ? " " : "")
                    << (helpFor(verb) ? verb : "") << '\n';
    };
    return reportErrors("midi-quillo", console.err, command, teach);
}

}  // namespace quillo
