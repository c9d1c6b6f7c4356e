// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/RenderCommand.hpp"

#include <array>
#include <ostream>
#include <utility>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/ExitStatus.hpp"
#include "commandline/InputFiles.hpp"
#include "commandline/OutputFile.hpp"
#include "log/EventLogEntry.hpp"
#include "midifile/MIDIFileError.hpp"
#include "midifile/MIDIFileWriter.hpp"
#include "offline/OfflineHost.hpp"
#include "offline/Score.hpp"
#include "platform/QuotedText.hpp"
#include "programs/PlayedFiles.hpp"
#include "programs/ProgressLine.hpp"
#include "words/MessageWords.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 7> options{{{"--preset", true},
                                         {"--sample-rate", true},
                                         {"--block", true},
                                         {"--tail", true},
                                         {"--trace", false},
                                         {"--force", false},
                                         forceSizeOption}};

/// What the user asked for.
struct Request {
    std::string source;
    std::string target;
    std::string preset;
    OfflineHost::Settings settings;
    bool trace;
    bool force;
    InputReading reading;
};

Request readRequest(std::span<const std::string> words) {
    const Arguments arguments(words, options);
    const auto& files = arguments.operands();
    if (files.size() != 2) {
        throw UsageError("render takes two MIDI files, the one to play and the one to write");
    }
    const auto preset = arguments.text("--preset");
    if (!preset) {
        throw UsageError("render needs a preset: --preset PRESET.json");
    }
    const OfflineHost::Settings defaults;
    return {files[0],
            files[1],
            *preset,
            {arguments.wholeNumber("--sample-rate", 1000, 768'000, defaults.sampleRate),
             arguments.wholeNumber("--block", 1, 1'048'576, defaults.block),
             arguments.number("--tail", 0, 86'400, defaults.tail)},
            arguments.has("--trace"),
            arguments.has("--force"),
            inputReading(arguments)};
}

OfflineHost::Log traceTo(std::ostream& out, const char* direction) {
    return [&out, direction](const EventLogEntry& entry) { out << direction << traceLine(entry) << '\n'; };
}

OfflineHost::Performance play(const Score& score, std::vector<Rule> rules, const Request& request,
                              const Console& console) {
    OfflineHost host(request.settings, std::move(rules));
    if (request.trace) {
        host.setLogs(traceTo(console.out, "in  "), traceTo(console.out, "out "));
    }
    ProgressLine progress(console.err, console.errIsTerminal, "rendering " + escaped(request.source));
    host.setProgress([&](double done) { progress.update(done); });
    return host.play(score.messages(), score.end());
}

std::vector<std::uint8_t> resultBytes(const Score& score, std::vector<TimedMessage> outputs,
                                      const std::string& target) {
    try {
        return writeMIDIFile(score.fileWith(std::move(outputs)));
    } catch (const MIDIFileError& error) {
        throw CommandFailure(exitCannotCreate, escaped(target) + ": not written: " + error.what());
    }
}

}  // namespace

int runRenderCommand(std::span<const std::string> words, const Console& console) {
    const auto request = readRequest(words);
    const auto score = readScore(request.source, request.reading, request.settings.sampleRate);
    auto rules = readPresetInput(request.preset, exitBadData, request.reading).data.rules;
    const OutputFile target(request.target, request.force);
    auto performance = play(score, std::move(rules), request, console);
    const auto sent = performance.outputs.size();
    target.write(resultBytes(score, std::move(performance.outputs), request.target));
    if (performance.cutOff > 0) {
        const bool isOne = performance.cutOff == 1;
        console.err << performance.cutOff
                    << (isOne ? " delayed output is due after the tail of "
                              : " delayed outputs are due after the tail of ")
                    << request.settings.tail << (isOne ? " s and was" : " s and were")
                    << " cut off; --tail makes it longer\n";
    }
    console.err << escaped(request.target) << ": " << score.messages().size() << " events in, " << sent
                << " out\n";
    return exitSuccess;
}

}  // namespace quillo
