// SPDX-License-Identifier: GPL-3.0-or-later
// A preset's test: what is read of it is played, recorded as a test of its own, and passes that one.
#include <optional>
#include <string_view>
#include <vector>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "analysis/PresetTest.hpp"

using namespace quillo;
using fuzz::require;

namespace {

std::vector<TimedEvent> eventsOf(const PresetTest& test) {
    std::vector<TimedEvent> events;
    events.reserve(test.steps.size());
    for (const auto& step : test.steps) {
        events.push_back(step.event);
    }
    return events;
}

std::optional<PresetTest> readTest(std::string_view text) {
    try {
        return PresetTest::read(text);
    } catch (const PresetTestError& error) {
        require(std::string_view(error.what()).starts_with("line "), "an error names its line");
        return std::nullopt;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static EngineProbe probe(fuzz::fuzzRules());
    if (const auto test = readTest({reinterpret_cast<const char*>(data), size})) {
        static_cast<void>(mismatches(*test, probe));
        const auto recorded = PresetTest::read(recordedTest(probe, eventsOf(*test)));
        require(mismatches(recorded, probe).empty(), "what was recorded passes");
    }
    return 0;
}
