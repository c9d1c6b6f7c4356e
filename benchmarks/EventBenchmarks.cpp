// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/EventStream.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Sinks.hpp"
#include "benchmarks/Table.hpp"
#include "engine/Cycle.hpp"
#include "engine/RuleProcessor.hpp"
#include "support/TestHost.hpp"

namespace quillo::bench {

namespace {

/// A processor without a unit around it, and the events of a cycle.
class ProcessorSetup {
public:
    ProcessorSetup(std::vector<Rule> rules, Events events) : events_(events) {
        processor_.setRules(std::move(rules));
    }

    void process() {
        Cycle cycle(processor_, OutputFunction(sink_), 0, cycleLength);
        events_.forEach([&](const AUMIDIEvent& event) QUILLO_REALTIME {
            cycle.midi(event.eventSampleTime, event.data, event.length);
        });
    }

    /// What is left of `process` when nobody asks for rules.
    void forward() {
        const OutputFunction output(sink_);
        events_.forEach([&](const AUMIDIEvent& event) {
            const auto message = MIDIMessage::inlineCopyOf({event.data.data(), event.length});
            output(event.eventSampleTime, 0, {&message, 1});
        });
    }

private:
    RuleProcessor processor_;
    EventStream events_;
    ProcessorSink sink_;
};

/// A unit, driven by its render block, and the events of a cycle. The same cycle is rendered again and again.
class UnitSetup {
public:
    explicit UnitSetup(std::vector<Rule> rules, Events events = Events::notes) : events_(events) {
        unit_->MIDIOutputEventBlock = UnitSink();
        unit_->processor->setRules(std::move(rules));
    }

    [[nodiscard]] MIDIQuilloAUAudioUnit& unit() { return *unit_; }

    void process() { render_({0.0}, cycleLength, events_.head()); }
    void renderEmptyCycle() { render_({0.0}, cycleLength, nullptr); }

    /// What is left of `process` when nobody asks for rules.
    void forward() {
        const auto output = unit_->MIDIOutputEventBlock.use();
        events_.forEach([&](const AUMIDIEvent& event) {
            (*output.get())(event.eventSampleTime, event.cable, {event.data.data(), event.length});
        });
    }

private:
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_ = test::makeUnit();
    AUInternalRenderBlock render_ = unit_->internalRenderBlock();
    EventStream events_;
};

std::string label(std::size_t count, const std::string& what) {
    return std::to_string(count) + (count == 1 ? " rule, " : " rules, ") + what;
}

template <class Setup>
void addRow(const Section& section, const std::string& name, const std::vector<Rule>& rules, Events events) {
    section.addRow(name, eventsPerCycle, [rules, events] {
        return [setup = std::make_shared<Setup>(rules, events)] { setup->process(); };
    });
}

template <class Setup>
void addEventRows(const Section& section) {
    section.addFloor("forward only", eventsPerCycle, [] {
        return [setup = std::make_shared<Setup>(std::vector<Rule>{}, Events::notes)] { setup->forward(); };
    });
    for (const auto count : Counts{0, 1, 16, 128, 1024, 10000}) {
        addRow<Setup>(section, label(count, "none matches"), rulesThatMatchNothing(count), Events::notes);
    }
    for (const auto count : Counts{1, 16, 128, 1024, 10000}) {
        addRow<Setup>(section, label(count, "the middle one matches"), rulesOfWhichTheMiddleMatches(count),
                      Events::middleNotes);
    }
    for (const auto count : Counts{1, 16, 128, 1024, 10000}) {
        addRow<Setup>(section, label(count, "wildcards, the first consumes"),
                      wildcardRules(count, PassThroughV2::EatMatching), Events::notes);
    }
    for (const auto count : Counts{1, 16, 128}) {
        addRow<Setup>(section, label(count, "wildcards, all fire"),
                      wildcardRules(count, PassThroughV2::PassThrough), Events::notes);
    }
    for (const auto count : Counts{128, 1024, 10000}) {
        addRow<Setup>(section, label(count, "other values of one controller"), rulesOfOneController(count),
                      Events::unknownValues);
    }
}

void addLoggedRow(const Section& section) {
    section.addRow("0 rules, both logs connected", eventsPerCycle, [] {
        auto setup = std::make_shared<UnitSetup>(std::vector<Rule>{});
        const auto log = [](const EventLogEntry& entry)
                             QUILLO_REALTIME {
            benchmark::DoNotOptimize(entry.timestamp);
        };
        setup->unit().logInput = log;
        setup->unit().logOutput = log;
        return [setup] { setup->process(); };
    });
}

void addCycleRows(const Section& section) {
    section.addFloor("a render block that does nothing", 1, [] {
        const AUInternalRenderBlock block = [](const AudioTimeStamp& timestamp, AUAudioFrameCount,
                                               const AURenderEvent*) QUILLO_REALTIME {
            benchmark::DoNotOptimize(timestamp.mSampleTime);
            return noErr;
        };
        return [block] { block({0.0}, cycleLength, nullptr); };
    });
    for (const auto count : Counts{0, 10000}) {
        section.addRow(label(count, "no transport"), 1, [count] {
            return [setup = std::make_shared<UnitSetup>(rulesThatMatchNothing(count))] {
                setup->renderEmptyCycle();
            };
        });
    }
    section.addRow("10000 rules, a transport that stands still", 1, [] {
        auto setup = std::make_shared<UnitSetup>(rulesThatMatchNothing(10000));
        setup->unit().transportStateBlock = [](AUHostTransportStateFlags* flags, double* position, double*,
                                               double*) QUILLO_REALTIME {
            *flags = 0;
            *position = 0.0;
            return true;
        };
        return [setup] { setup->renderEmptyCycle(); };
    });
}

}  // namespace

void addEventBenchmarks() {
    addEventRows<ProcessorSetup>(Section("Processor", "event"));
    const Section unit("Whole unit", "event");
    addEventRows<UnitSetup>(unit);
    addLoggedRow(unit);
    addCycleRows(Section("Whole unit without events", "cycle"));
}

}  // namespace quillo::bench
