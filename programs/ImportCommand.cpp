// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <array>
#include <optional>
#include <ostream>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "otherformats/OtherFormat.hpp"
#include "persistence/PluginData.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 4> importOptions{
    {{"-o", true}, {"--force"}, {"--drop-unmatched"}, forceSizeOption}};

OtherRules readRules(const std::string& path, const Arguments& arguments) {
    const auto text = readTextInput(path, inputReading(arguments));
    try {
        return readOtherFormat(text, arguments.has("--drop-unmatched") ? Unmatched::drop : Unmatched::pass);
    } catch (const OtherFormatError& error) {
        throw CommandFailure(exitBadData, escaped(path) + ": " + error.what());
    }
}

}  // namespace

int runImportCommand(std::span<const std::string> words, const Console& console) {
    const Arguments arguments(words, importOptions);
    if (arguments.operands().size() != 1) {
        throw UsageError("import takes one file");
    }
    const auto target = arguments.text("-o");
    std::optional<OutputFile> file;
    if (target) {
        file.emplace(*target, arguments.has("--force"), &console.out);
    }
    const auto taken = readRules(arguments.operands().front(), arguments);
    streamOfWords(target.value_or(""), console) << takenText(taken);
    if (taken.isEmpty()) {
        throw CommandFailure(exitBadData,
                             escaped(arguments.operands().front()) + ": holds no rule that can be taken");
    }
    if (file) {
        file->write(PluginData{taken.rules, taken.shelf}.write());
        console.err << (target == standardStream ? "" : escaped(*target) + ": written\n");
    }
    return exitSuccess;
}

}  // namespace quillo
