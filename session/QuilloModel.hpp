// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/MIDIMessage.hpp"
#include "log/EventLogEntry.hpp"
#include "log/MyCyclicBuffer.hpp"
#include "persistence/PluginData.hpp"
#include "platform/Observers.hpp"
#include "rules/RuleEntryIdentifiable.hpp"
#include "session/RuleHits.hpp"

namespace quillo {

/// A delayed output that waits.
struct WaitingOutput {
    std::uint64_t number = 0;  ///< names it: no other ever has its number
    double secondsToGo = 0.0;
    MessageList messages;
    std::string ruleName;  ///< as it was when the rule fired; empty for an unnamed rule

    bool operator==(const WaitingOutput&) const = default;
};

/// The editor's observable state: the rules as they are edited and how often they have fired, the two event
/// logs, what waits to be sent, and what went wrong. Each change of a part notifies those who observe it,
/// once a change. [main] only.
class QuilloModel {
public:
    /// How many entries each log keeps.
    static constexpr std::size_t logCapacity = 100;

    using Log = MyCyclicBuffer<EventLogEntry>;

    [[nodiscard]] const std::vector<RuleEntryIdentifiable>& rules() const { return rules_; }
    void setRules(std::vector<RuleEntryIdentifiable> rules);

    /// Shows the rules that run and those that are switched off, as a new list; or why they cannot be edited,
    /// when one of them has no entry. An alert says what must be known before they are edited.
    void showRules(std::vector<Rule> rules, RuleShelf shelf = {});

    /// Why rules run that the editor cannot show; nothing when it shows all that run. While there is
    /// a reason, `rules` is empty and must not be installed.
    [[nodiscard]] const std::optional<std::string>& whyNotEditable() const { return whyNotEditable_; }
    /// The rules that run and are not shown, with those that are switched off; nothing while all are shown,
    /// and where nobody knows them.
    [[nodiscard]] const std::optional<PluginData>& rulesNotShown() const { return rulesNotShown_; }
    void setNotEditable(std::string reason, std::optional<PluginData> rules = std::nullopt);

    /// The text of the alert titled "Error", which the editor shows while there is one: also when it is
    /// opened later.
    [[nodiscard]] const std::optional<std::string>& alertErrorMessage() const { return alertErrorMessage_; }
    /// Shows the alert, or lets it wait until those before it are dismissed. One that is shown or waits
    /// already is ignored.
    void alert(std::string message);
    /// The user has read the alert: the next one is shown.
    void dismissAlert();
    /// What the alert says is no longer true: it goes, whether it is shown or waits.
    void takeBackAlert(const std::string& message);

    /// How often each of `rules` has fired, and when last, never where it is switched off; empty where nobody
    /// counts.
    [[nodiscard]] const std::vector<RuleHits>& hits() const { return hits_; }
    void setHits(std::vector<RuleHits> hits) { hits_ = std::move(hits); }

    /// The delayed outputs that wait, as of a moment ago: the first to leave first. Empty unless the list is
    /// watched.
    [[nodiscard]] const std::vector<WaitingOutput>& waiting() const { return waiting_; }
    /// How many they are, watched or not.
    [[nodiscard]] std::size_t waitingCount() const { return waitingCount_; }
    void setWaiting(std::vector<WaitingOutput> waiting, std::size_t count);

    /// What the last panic did; nothing once that has been dismissed.
    [[nodiscard]] const std::optional<std::string>& panicAnswer() const { return panicAnswer_; }
    void setPanicAnswer(std::string answer);
    void dismissPanicAnswer();

    /// Whether editors show each rule in one line. No document says so.
    [[nodiscard]] bool rulesInOneLine() const { return rulesInOneLine_; }
    void setRulesInOneLine(bool inOneLine) { rulesInOneLine_ = inOneLine; }

    /// The rules that run, as the model knows them, and those that ran when the newest event came in: the
    /// same unless rules have changed since. Clock and active sensing, which come all the time, do not count.
    [[nodiscard]] std::vector<Rule> rulesThatRun() const;
    [[nodiscard]] std::vector<Rule> rulesOfNewestEvent() const;

    [[nodiscard]] const Log& inLog() const { return inLog_; }
    [[nodiscard]] const Log& outLog() const { return outLog_; }
    /// How many entries the In log was ever given: what is new is counted by it.
    [[nodiscard]] std::uint64_t inLogCount() const { return inLogCount_; }
    /// Appends in order and notifies once; nothing happens for no entries.
    void appendToInLog(const std::vector<EventLogEntry>& entries);
    void appendToOutLog(const std::vector<EventLogEntry>& entries);
    void clearInLog();
    void clearOutLog();

    /// `callback` runs after each change of that part for as long as the returned observation lives.
    [[nodiscard]] Observation observeRules(std::function<void()> callback) {
        return rulesObservers_.add(std::move(callback));
    }
    [[nodiscard]] Observation observeAlert(std::function<void()> callback) {
        return alertObservers_.add(std::move(callback));
    }
    [[nodiscard]] Observation observeWaiting(std::function<void()> callback) {
        return waitingObservers_.add(std::move(callback));
    }
    [[nodiscard]] Observation observePanic(std::function<void()> callback) {
        return panicObservers_.add(std::move(callback));
    }
    [[nodiscard]] Observation observeInLog(std::function<void()> callback) {
        return inLogObservers_.add(std::move(callback));
    }
    [[nodiscard]] Observation observeOutLog(std::function<void()> callback) {
        return outLogObservers_.add(std::move(callback));
    }

private:
    void keepRulesOfNewestEvent();

    std::vector<RuleEntryIdentifiable> rules_;
    std::optional<std::vector<Rule>> rulesOfNewestEvent_;  ///< nothing while they are those that run
    std::optional<std::string> whyNotEditable_;
    std::optional<PluginData> rulesNotShown_;
    std::optional<std::string> alertErrorMessage_;
    std::deque<std::string> waitingAlerts_;  ///< none while none is shown
    std::vector<RuleHits> hits_;
    std::vector<WaitingOutput> waiting_;
    std::size_t waitingCount_ = 0;
    std::optional<std::string> panicAnswer_;
    bool rulesInOneLine_ = false;
    Log inLog_{logCapacity};
    std::uint64_t inLogCount_ = 0;
    Log outLog_{logCapacity};
    Observers rulesObservers_;
    Observers alertObservers_;
    Observers waitingObservers_;
    Observers panicObservers_;
    Observers inLogObservers_;
    Observers outLogObservers_;
};

}  // namespace quillo
