// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/PresetTest.hpp"

#include <algorithm>
#include <utility>
#include <variant>

#include "platform/HexText.hpp"
#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

using Transport = HostTransportTriggerVariantsV2;
using Wanted = PresetTest::Wanted;

std::vector<Wanted> wantedBy(const PresetTest& test) {
    std::vector<Wanted> all;
    for (const auto& step : test.steps) {
        all.insert(all.end(), step.wanted.begin(), step.wanted.end());
    }
    return inStableOrder(std::move(all), &Wanted::time);
}

std::vector<Departure> answerTo(const PresetTest& test, const EngineProbe& probe) {
    std::vector<TimedEvent> events;
    events.reserve(test.steps.size());
    for (const auto& step : test.steps) {
        events.push_back(step.event);
    }
    return played(probe, events);
}

/// Parts the elements of one time from the front of those that come later.
template <class Element>
std::span<const Element> takeThoseOf(SampleTime time, std::span<const Element>& elements) {
    const auto behind =
        std::ranges::find_if(elements, [time](const Element& each) { return each.time > time; });
    const auto taken = elements.first(static_cast<std::size_t>(behind - elements.begin()));
    elements = elements.subspan(taken.size());
    return taken;
}

/// What is wanted and what leaves at one time, without what is alike at both ends.
class Moment {
public:
    Moment(std::span<const Wanted> wanted, std::span<const Departure> got) : wanted_(wanted), got_(got) {
        while (hasBoth() && wanted_.front().message == got_.front().message) {
            wanted_ = wanted_.subspan(1);
            got_ = got_.subspan(1);
        }
        while (hasBoth() && wanted_.back().message == got_.back().message) {
            wanted_ = wanted_.first(wanted_.size() - 1);
            got_ = got_.first(got_.size() - 1);
        }
    }

    /// What is left of both, side by side.
    void appendTo(std::vector<Mismatch>& found, const PresetTest& test) const {
        for (std::size_t i = 0; i < std::max(wanted_.size(), got_.size()); ++i) {
            auto& mismatch = found.emplace_back();
            if (i < got_.size()) {
                const auto line = test.steps[got_[i].event].line;
                mismatch = {got_[i].time, line, std::nullopt, got_[i]};
            }
            if (i < wanted_.size()) {
                mismatch = {wanted_[i].time, wanted_[i].line, wanted_[i].message, std::move(mismatch.got)};
            }
        }
    }

private:
    [[nodiscard]] bool hasBoth() const { return !wanted_.empty() && !got_.empty(); }

    std::span<const Wanted> wanted_;
    std::span<const Departure> got_;
};

std::string text(const MIDIMessage& message) {
    return hexText(message.bytes(), HexCase::lower);
}

std::string text(Transport change) {
    switch (change) {
    case Transport::Start: return "transport start";
    case Transport::Continue: return "transport continue";
    case Transport::Stop: return "transport stop";
    }
    return {};
}

std::string timed(SampleTime time, const std::string& what) {
    return "at " + std::to_string(time) + " ms: " + what;
}

std::string eventText(const TimedEvent& timedEvent) {
    const auto& [time, event] = timedEvent;
    if (const auto* message = std::get_if<MIDIMessage>(&event)) {
        return timed(time, text(*message));
    }
    const auto* change = std::get_if<Transport>(&event);
    return change == nullptr ? "on load" : timed(time, text(*change));
}

std::string answerText(std::span<const Departure> answer) {
    std::string lines = answer.empty() ? " \u2192 nothing" : "";
    for (const auto& departure : answer) {
        lines += (answer.size() == 1 ? " \u2192 " : "\n    \u2192 ") +
                 timed(departure.time, text(departure.message));
    }
    return lines + '\n';
}

}  // namespace

std::vector<Mismatch> mismatches(const PresetTest& test, const EngineProbe& probe) {
    const auto allWanted = wantedBy(test);
    const auto allGot = answerTo(test, probe);
    std::span<const Wanted> wanted(allWanted);
    std::span<const Departure> got(allGot);
    std::vector<Mismatch> found;
    while (!wanted.empty() || !got.empty()) {
        const bool isWantedFirst = got.empty() || (!wanted.empty() && wanted.front().time < got.front().time);
        const auto time = isWantedFirst ? wanted.front().time : got.front().time;
        const auto wantedNow = takeThoseOf(time, wanted);
        Moment(wantedNow, takeThoseOf(time, got)).appendTo(found, test);
    }
    return found;
}

std::string recordedTest(const EngineProbe& probe, std::span<const TimedEvent> events) {
    std::vector<std::vector<Departure>> answers(events.size());
    for (auto& departure : played(probe, events)) {
        answers[departure.event].push_back(std::move(departure));
    }
    std::string lines;
    for (std::size_t i = 0; i < events.size(); ++i) {
        lines += eventText(events[i]) + answerText(answers[i]);
    }
    return lines;
}

}  // namespace quillo
