// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>
#include <string>

#include "benchmarks/EventStream.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Sinks.hpp"
#include "benchmarks/Table.hpp"
#include "engine/Cycle.hpp"
#include "engine/RuleProcessor.hpp"
#include "support/TestRules.hpp"

namespace quillo::bench {

namespace {

constexpr std::int64_t moreThanACycle = 12;  // ms at 44100 samples per second
constexpr std::int64_t hours = 100'000'000;  // ms

/// A rule that sends something for each note that it consumes, `delay` milliseconds later.
std::vector<Rule> delayingRule(std::int64_t delay) {
    const auto trigger = test::onNoteOn(test::any, test::any, PassThroughV2::EatMatching);
    return {test::rule(trigger, test::send(test::noteOn(0, 60, 100), delay))};
}

/// Cycles that each queue one output for each of their events, and send those of the cycle before.
class DelaySetup {
public:
    explicit DelaySetup(std::size_t waiting) {
        processor_.setRules(delayingRule(hours));
        for (std::size_t queued = 0; queued < waiting; queued += eventsPerCycle) {
            renderCycle();
        }
        processor_.setRules(delayingRule(moreThanACycle));
    }

    void renderCycle() {
        const auto end = start_ + cycleLength;
        Cycle cycle(processor_, OutputFunction(sink_), start_, end);
        events_.forEach([&](const AUMIDIEvent& event) {
            cycle.midi(start_ + event.eventSampleTime, event.data, event.length);
        });
        start_ = end;
    }

    /// What is left of `renderCycle` when events are sent at once.
    void forward() {
        const OutputFunction output(sink_);
        events_.forEach([&](AUMIDIEvent event) {
            event.eventSampleTime += start_;
            const auto message = MIDIMessage::inlineCopyOf({event.data.data(), event.length});
            output(event.eventSampleTime, 0, {&message, 1});
        });
        start_ += cycleLength;
    }

private:
    RuleProcessor processor_;
    EventStream events_{Events::notes};
    ProcessorSink sink_;
    SampleTime start_ = 0;
};

}  // namespace

void addDelayBenchmarks() {
    const Section section("Processor, delayed", "output");
    section.addFloor("forward only", eventsPerCycle,
                     [] { return [setup = std::make_shared<DelaySetup>(0)] { setup->forward(); }; });
    for (const auto waiting : Counts{0, 1024, 8960}) {
        section.addRow(
            "queued and sent, " + std::to_string(waiting) + " others wait", eventsPerCycle,
            [waiting] { return [setup = std::make_shared<DelaySetup>(waiting)] { setup->renderCycle(); }; });
    }
}

}  // namespace quillo::bench
