// SPDX-License-Identifier: GPL-3.0-or-later
// A state document of any form: read and migrated, written, read again as the same, compiled, and run for a
// cycle.
#include <optional>
#include <utility>

#include "FuzzInput.hpp"
#include "engine/Cycle.hpp"
#include "engine/RuleProcessor.hpp"
#include "persistence/DecodingError.hpp"
#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/FatalError.hpp"
#include "platform/RealTimeFunction.hpp"
#include "realtime/EveryRule.hpp"

using namespace quillo;
using fuzz::require;

namespace {

std::optional<PluginData> read(std::span<const std::uint8_t> document) {
    try {
        return PluginData::read(document);
    } catch (const DecodingError& error) {
        require(!problemInWords(error, document).empty(), "a refusal has words");
    } catch (const FatalError& error) {
        require(!error.inWords().empty(), "a refusal has words");
    }
    return std::nullopt;
}

bool tryInstall(RuleProcessor& processor, std::vector<Rule> rules) {
    try {
        processor.setRules(std::move(rules));
        return true;
    } catch (const FatalError& error) {
        require(!error.inWords().empty(), "a refusal has words");
        return false;
    }
}

void runCycle(RuleProcessor& processor) {
    constexpr SampleTime end = 512;
    auto output = WithoutDeadline([](SampleTime time, std::uint8_t, std::span<const MIDIMessage> messages) {
        require(time >= 0 && time < end, "what is sent lies in its cycle");
        for (const auto& message : messages) {
            require(!message.bytes().empty(), "a message has bytes");
        }
        return noErr;
    });
    Cycle cycle(processor, output, 0, end);
    cycle.transport(0, HostTransportTriggerVariantsV2::Start);
    for (const auto& message : test::everyMessage) {
        cycle.midi(1, message, message.size());
    }
    cycle.transport(end - 1, HostTransportTriggerVariantsV2::Stop);
    require(cycle.status() == noErr || processor.fatalErrors.isSet(), "a cycle ends well or says why");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto document = read({data, size});
    if (!document) {
        return 0;
    }
    const auto written = document->write();
    require(PluginData::read(written) == *document, "what was written reads as the same");
    RuleProcessor processor;
    if (tryInstall(processor, document->rules)) {
        runCycle(processor);
    }
    return 0;
}
