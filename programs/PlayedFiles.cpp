// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/PlayedFiles.hpp"

#include <ostream>

#include "commandline/CommandFailure.hpp"
#include "midifile/MIDIFile.hpp"
#include "platform/PlainText.hpp"

namespace quillo {

using Transport = HostTransportTriggerVariantsV2;

Score readScore(const std::string& path, InputReading reading, std::uint32_t sampleRate,
                std::istream* standardInput) {
    const auto file = readMIDIInput(path, reading, standardInput);
    try {
        return {file, sampleRate};
    } catch (const MIDIFileError& error) {
        throw CommandFailure(exitBadData, inputName(path) + ": " + error.what());
    }
}

std::vector<TimedEvent> eventsOf(const Score& score) {
    std::vector<TimedEvent> events{{0, PluginLoad{}}, {0, Transport::Start}};
    for (const auto& [time, message] : score.messages()) {
        events.push_back({time, message});
    }
    events.push_back({score.end(), Transport::Stop});
    return events;
}

void writeLeftOut(const Score::LeftOut& leftOut, std::ostream& err) {
    if (leftOut.events > 0) {
        err << countWords(leftOut.events, "SysEx or escape event") << (leftOut.events == 1 ? " was" : " were")
            << " left out, " << leftOut.bytes << " bytes: rules never see them\n";
    }
}

EngineProbe readProbe(const std::string& path, InputReading reading) {
    return blamingPreset(path, exitBadData,
                         [&] { return EngineProbe(readPresetInput(path, exitBadData, reading).data.rules); });
}

int runComparing(const std::function<int()>& verb) {
    try {
        return verb();
    } catch (const CommandFailure& failure) {
        throw CommandFailure(exitTrouble, failure.what());
    }
}

}  // namespace quillo
