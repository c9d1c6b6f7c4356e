// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/WhatNow.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

using Mark = MarkedEntry::Mark;
using Entries = std::vector<EventLogEntry>;

/// How often the same message leaves at the same time.
struct Count {
    std::size_t before = 0;
    std::size_t now = 0;

    void take(std::size_t number) {
        before -= number;
        now -= number;
    }
};

std::vector<TimedEvent> eventsOf(const Entries& in) {
    std::vector<TimedEvent> events;
    events.reserve(in.size());
    for (const auto& entry : in) {
        events.push_back({entry.timestamp, askedEvent(entry.variants)});
    }
    return inStableOrder(std::move(events), &TimedEvent::time);
}

/// What leaves, as the Out log would record it. The probe counts delays in samples.
Entries sent(const std::vector<Rule>& rules, const std::vector<TimedEvent>& events,
             std::uint64_t sampleRate) {
    EngineProbe probe(rules, sampleRate);
    Entries entries;
    for (auto& departure : played(probe, events)) {
        entries.push_back({departure.time, EventLogEntryVariants::MIDI{std::move(departure.message)}});
    }
    return entries;
}

/// A comparison of two lists of messages, and its marks.
class Marking {
public:
    Marking(const Entries& before, const Entries& now) {
        for (const auto& entry : before) {
            ++differing_[text(entry)].before;
        }
        for (const auto& entry : now) {
            ++differing_[text(entry)].now;
        }
        bool sameMessages = true;
        for (auto& [words, count] : differing_) {
            const auto both = std::min(count.before, count.now);
            alike_[words] = both;
            count.take(both);
            sameMessages = sameMessages && count.before + count.now == 0;
        }
        log_.isReordered = sameMessages && before != now;
    }

    /// Other rules than `before` can have sent what `now` would send: then it is alike too.
    void markSent(const EventLogEntry& entry) {
        auto mark = Mark::none;
        if (takeOne(alike_[text(entry)]) || takeOne(differing_[text(entry)].now)) {
            ++log_.alike;
        } else if (takeOne(differing_[text(entry)].before)) {
            mark = Mark::gone;
        }
        log_.entries.push_back({entry, mark});
    }

    void markNew(const EventLogEntry& entry) {
        if (takeOne(differing_[text(entry)].now)) {
            log_.entries.push_back({entry, Mark::added});
        }
    }

    [[nodiscard]] MarkedLog take() {
        log_.entries = inStableOrder(std::move(log_.entries),
                                     [](const MarkedEntry& marked) { return marked.entry.timestamp; });
        return std::move(log_);
    }

private:
    static bool takeOne(std::size_t& number) {
        const bool any = number > 0;
        number -= any ? 1 : 0;
        return any;
    }

    std::map<std::string, Count> differing_;
    std::map<std::string, std::size_t> alike_;
    MarkedLog log_;
};

}  // namespace

MarkedLog whatNow(const std::vector<Rule>& before, const std::vector<Rule>& now, const KeptLogs& logs,
                  std::uint64_t sampleRate) {
    const auto events = eventsOf(logs.in);
    const auto after = sent(now, events, sampleRate);
    Marking marking(sent(before, events, sampleRate), after);
    for (const auto& entry : logs.out) {
        marking.markSent(entry);
    }
    for (const auto& entry : after) {
        if (!logs.forgets || entry.timestamp >= logs.out.front().timestamp) {
            marking.markNew(entry);
        }
    }
    return marking.take();
}

MarkedLog whatNow(const QuilloModel& model, std::uint64_t sampleRate) {
    const auto entriesOf = [](const QuilloModel::Log& log) { return Entries(log.begin(), log.end()); };
    const KeptLogs logs{entriesOf(model.inLog()), entriesOf(model.outLog()),
                        model.outLog().size() == QuilloModel::logCapacity};
    return whatNow(model.rulesOfNewestEvent(), model.rulesThatRun(), logs, sampleRate);
}

}  // namespace quillo
