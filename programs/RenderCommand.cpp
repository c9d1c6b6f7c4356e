// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <array>
#include <ostream>
#include <utility>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "commandline/Files.hpp"
#include "engine/RuleProcessor.hpp"
#include "log/EventLogEntry.hpp"
#include "midifile/MIDIFile.hpp"
#include "offline/OfflineHost.hpp"
#include "offline/Score.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "programs/JSONText.hpp"
#include "programs/PlayedFiles.hpp"
#include "programs/ProgressLine.hpp"
#include "words/MessageWords.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 8> renderOptions{{{"--preset", true},
                                               {"--json", false},
                                               {"--sample-rate", true},
                                               {"--block", true},
                                               {"--tail", true},
                                               {"--trace", false},
                                               {"--force", false},
                                               forceSizeOption}};

/// What the user asked for.
struct RenderRequest {
    std::string source;
    std::string target;
    std::string preset;
    OfflineHost::Settings settings;
    bool trace;
    bool json;
    bool force;
    InputReading reading;
};

RenderRequest readRenderRequest(std::span<const std::string> words) {
    const Arguments arguments(words, renderOptions);
    const auto& files = arguments.operands();
    if (files.size() != 2) {
        throw UsageError("render takes two MIDI files, the one to play and the one to write");
    }
    const auto preset = arguments.text("--preset");
    if (!preset) {
        throw UsageError("render needs a preset: --preset PRESET.json");
    }
    if (files[0] == standardStream && *preset == standardStream) {
        throw UsageError("standard input cannot be both the MIDI file and the preset");
    }
    if (arguments.has("--trace") && arguments.has("--json")) {
        throw UsageError("--trace and --json do not go together");
    }
    const OfflineHost::Settings defaults;
    return {files[0],
            files[1],
            *preset,
            {arguments.wholeNumber("--sample-rate", 1000, 768'000, defaults.sampleRate),
             arguments.wholeNumber("--block", 1, 1'048'576, defaults.block),
             arguments.number("--tail", 0, 86'400, defaults.tail)},
            arguments.has("--trace"),
            arguments.has("--json"),
            arguments.has("--force"),
            inputReading(arguments)};
}

OfflineHost::Log traceTo(std::ostream& out, const char* direction) {
    return [&out, direction](const EventLogEntry& entry) { out << direction << traceLine(entry) << '\n'; };
}

OfflineHost::Performance play(const Score& score, std::vector<Rule> rules, const RenderRequest& request,
                              const Console& console) {
    OfflineHost host(request.settings, std::move(rules));
    if (request.trace) {
        auto& out = streamOfWords(request.target, console);
        host.setLogs(traceTo(out, "in  "), traceTo(out, "out "));
    }
    ProgressLine progress(console.err, console.errIsTerminal, "rendering " + inputName(request.source));
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

/// How a rendering went.
struct Summary {
    std::size_t in = 0;
    std::size_t out = 0;
    std::size_t cutOff = 0;
    std::uint64_t lost = 0;
    Score::LeftOut leftOut;
};

/// "1 delayed output was", "2 delayed outputs were".
std::string outputsWere(std::uint64_t count) {
    return countWords(count, "delayed output") + (count == 1 ? " was" : " were");
}

void writeSummary(const Summary& summary, const RenderRequest& request, std::ostream& err) {
    writeLeftOut(summary.leftOut, err);
    if (summary.lost > 0) {
        err << outputsWere(summary.lost) << " dropped: only " << RuleProcessor::delayCapacity
            << " can wait at one time\n";
    }
    if (summary.cutOff > 0) {
        err << outputsWere(summary.cutOff) << " cut off: due after the tail of " << request.settings.tail
            << " s; --tail makes it longer\n";
    }
    err << (request.target == standardStream ? "standard output" : escaped(request.target)) << ": "
        << summary.in << " events in, " << summary.out << " out\n";
}

JSONAnswer json(const Summary& summary) {
    return {{"eventsIn", summary.in},
            {"eventsOut", summary.out},
            {"cutOff", summary.cutOff},
            {"dropped", summary.lost},
            {"sysExLeftOut", {{"events", summary.leftOut.events}, {"bytes", summary.leftOut.bytes}}}};
}

}  // namespace

int runRenderCommand(std::span<const std::string> words, const Console& console) {
    const auto request = readRenderRequest(words);
    const auto score = readScore(request.source, request.reading, request.settings.sampleRate, &console.in);
    const OutputFile target(request.target, request.force, &console.out);
    auto performance = blamingPreset(request.preset, exitBadData, [&] {
        auto document = readPresetInput(request.preset, exitBadData, request.reading, &console.in);
        return play(score, std::move(document.data.rules), request, console);
    });
    const Summary summary{score.messages().size(), performance.outputs.size(), performance.cutOff,
                          performance.lost, score.leftOut()};
    target.write(resultBytes(score, std::move(performance.outputs), request.target));
    if (request.json) {
        streamOfWords(request.target, console) << jsonText(json(summary));
    } else {
        writeSummary(summary, request, console.err);
    }
    return exitSuccess;
}

}  // namespace quillo
