// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/DiffText.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <variant>

#include "analysis/EventExplanation.hpp"
#include "analysis/RuleReasons.hpp"
#include "platform/HexText.hpp"
#include "platform/PlainText.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Difference = Comparison::Difference;

constexpr SampleTime microsecondsPerMillisecond = 1000;

/// How often a rule fires in each of the presets that have it.
struct RuleChange {
    RulePair pair;
    std::size_t first = 0;
    std::size_t second = 0;
};

std::vector<RuleChange> ruleChanges(const PlayedTwice& played) {
    const auto& [differences, firstHits, secondHits] = played.comparison;
    std::vector<RuleChange> changes;
    for (const auto& pair : paired(played.first.rules(), played.second.rules())) {
        const RuleChange change{pair, pair.first ? firstHits[*pair.first] : 0,
                                pair.second ? secondHits[*pair.second] : 0};
        if (change.first != change.second) {
            changes.push_back(change);
        }
    }
    return changes;
}

/// "1250 ms", with what is left of a millisecond if there is any.
std::string timeText(SampleTime microseconds) {
    auto digits = std::to_string(microseconds % microsecondsPerMillisecond + microsecondsPerMillisecond);
    digits.erase(digits.find_last_not_of('0') + 1);
    digits.front() = '.';
    return std::to_string(microseconds / microsecondsPerMillisecond) + (digits.size() > 1 ? digits : "") +
           " ms";
}

/// "91 3c 64 after 300 ms".
std::string departureText(const std::vector<Departure>& departures, std::size_t index) {
    if (index >= departures.size()) {
        return index == 0 ? "nothing" : "";
    }
    const auto& departure = departures[index];
    return shownBytes(departure.message) +
           (departure.time == 0 ? "" : " after " + std::to_string(departure.time) + " ms");
}

std::string eventBytes(const AskedEvent& event) {
    const auto words = eventWords(event);
    return words.substr(0, words.find(':'));
}

/// The words of `explain` about one event and one preset.
class Side {
public:
    Side(const EngineProbe& probe, const AskedEvent& event)
        : rules_(probe.rules()),
          explanation_(explain(probe, event)),
          reasons_(ruleReasons(rules_, event, explanation_)),
          isMessage_(std::holds_alternative<MIDIMessage>(event)) {}

    /// Whether the rule had a part in what became of the event.
    [[nodiscard]] bool acts(std::optional<std::size_t> rule) const {
        return rule && (reasons_[*rule].fired || reasons_[*rule].consumed);
    }

    [[nodiscard]] std::string line(std::size_t rule) const {
        return "  " + ruleWords(rules_, rule) + " " + reasons_[rule].text() + "\n";
    }

    [[nodiscard]] std::string end() const {
        if (!isMessage_) {
            return "";
        }
        return explanation_.forwarded ? "  the event goes on to the output\n"
                                      : "  the event does not go on to the output\n";
    }

private:
    const std::vector<Rule>& rules_;
    EventExplanation explanation_;
    std::vector<RuleReason> reasons_;
    bool isMessage_;
};

std::string orNoRule(const std::string& lines) {
    return lines.empty() ? "  no rule fires\n" : lines;
}

/// The rules that act in one of the presets, with what each of the two says of them.
std::string firstDifferenceText(const PlayedTwice& played) {
    const auto& [time, event] = played.events[played.comparison.differences.front().event];
    const Side first(played.first, event);
    const Side second(played.second, event);
    std::string before;
    std::string after;
    for (const auto& pair : paired(played.first.rules(), played.second.rules())) {
        if (first.acts(pair.first) || second.acts(pair.second)) {
            before += pair.first ? first.line(*pair.first) : "";
            after += pair.second ? second.line(*pair.second) : "";
        }
    }
    return "The first difference, at " + timeText(time) + ": " + eventWords(event) + "\nA:\n" +
           orNoRule(before) + first.end() + "B:\n" + orNoRule(after) + second.end();
}

/// The columns of all differences.
class Table {
public:
    explicit Table(const PlayedTwice& played) : played_(played) {
        for (const auto& difference : played.comparison.differences) {
            widen(difference);
        }
    }

    [[nodiscard]] std::string text() const {
        auto lines = row("at", "in", "out of A", "out of B");
        for (const auto& difference : played_.comparison.differences) {
            const auto& [time, event] = played_.events[difference.event];
            for (std::size_t i = 0; i < rowCount(difference); ++i) {
                lines += row(i == 0 ? timeText(time) : "", i == 0 ? eventBytes(event) : "",
                             departureText(difference.first, i), departureText(difference.second, i));
            }
        }
        return lines;
    }

private:
    static std::size_t rowCount(const Difference& difference) {
        return std::max(difference.first.size(), difference.second.size());
    }

    void widen(const Difference& difference) {
        const auto& [time, event] = played_.events[difference.event];
        timeWidth_ = std::max(timeWidth_, timeText(time).size());
        eventWidth_ = std::max(eventWidth_, eventBytes(event).size());
        for (std::size_t i = 0; i < rowCount(difference); ++i) {
            firstWidth_ = std::max(firstWidth_, departureText(difference.first, i).size());
        }
    }

    /// A bar marks where the two differ.
    [[nodiscard]] std::string row(const std::string& time, const std::string& event, const std::string& first,
                                  const std::string& second) const {
        auto line = padded(time, timeWidth_) + "  " + padded(event, eventWidth_) + "  " +
                    padded(first, firstWidth_) + (first == second ? "   " : " | ") + second;
        line.erase(line.find_last_not_of(' ') + 1);
        return line + '\n';
    }

    const PlayedTwice& played_;
    std::size_t timeWidth_ = 2;
    std::size_t eventWidth_ = 2;
    std::size_t firstWidth_ = 8;
};

std::string changeText(const RuleChange& change, const PlayedTwice& played) {
    const auto& [pair, first, second] = change;
    if (!pair.second) {
        return ruleWords(played.first.rules(), *pair.first) + " of A fires " + countWords(first, "time") +
               ", and B does not have it\n";
    }
    const auto words = ruleWords(played.second.rules(), *pair.second);
    if (!pair.first) {
        return words + " of B fires " + countWords(second, "time") + ", and A does not have it\n";
    }
    const auto difference = second > first ? countWords(second - first, "time") + " more"
                                           : countWords(first - second, "time") + " less";
    return words + " fires " + difference + ": " + std::to_string(first) + " in A, " +
           std::to_string(second) + " in B\n";
}

std::string changesText(const PlayedTwice& played) {
    std::string lines;
    for (const auto& change : ruleChanges(played)) {
        lines += changeText(change, played);
    }
    return lines.empty() ? "Every rule fires as often in A as in B.\n" : lines;
}

JSONAnswer json(const std::vector<Departure>& departures) {
    auto all = JSONAnswer::array();
    for (const auto& [time, message, rule, event] : departures) {
        all.push_back({{"afterMs", time}, {"bytes", hexText(message.bytes(), HexCase::lower)}});
        if (rule) {
            all.back()["rule"] = *rule + 1;
        }
    }
    return all;
}

JSONAnswer json(const Difference& difference, const PlayedTwice& played) {
    const auto& [time, event] = played.events[difference.event];
    return {{"ms", static_cast<double>(time) / microsecondsPerMillisecond},
            {"event", eventBytes(event)},
            {"a", json(difference.first)},
            {"b", json(difference.second)}};
}

JSONAnswer json(const RuleChange& change, const PlayedTwice& played) {
    const auto side = [](std::optional<std::size_t> rule, const EngineProbe& probe) {
        return rule ? jsonOfRule(*rule, probe.rules()[*rule].name) : JSONAnswer();
    };
    return {{"a", side(change.pair.first, played.first)},
            {"b", side(change.pair.second, played.second)},
            {"firesInA", change.first},
            {"firesInB", change.second}};
}

}  // namespace

std::string diffText(const PlayedTwice& played) {
    if (played.comparison.differences.empty()) {
        return "";
    }
    return firstDifferenceText(played) + '\n' + Table(played).text() + '\n' + changesText(played);
}

JSONAnswer diffAnswer(const PlayedTwice& played) {
    JSONAnswer answer{{"same", played.comparison.differences.empty()},
                      {"events", played.events.size()},
                      {"differences", JSONAnswer::array()},
                      {"rules", JSONAnswer::array()}};
    for (const auto& difference : played.comparison.differences) {
        answer["differences"].push_back(json(difference, played));
    }
    for (const auto& change : ruleChanges(played)) {
        answer["rules"].push_back(json(change, played));
    }
    return answer;
}

}  // namespace quillo
