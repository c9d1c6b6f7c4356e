// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/QuilloModel.hpp"

#include <algorithm>
#include <utility>

#include "midi/Status.hpp"

namespace quillo {

namespace {

void append(QuilloModel::Log& log, const std::vector<EventLogEntry>& entries, Observers& observers) {
    if (entries.empty()) {
        return;
    }
    for (const auto& entry : entries) {
        log.append(entry);
    }
    observers.notify();
}

/// Whether it comes all the time, played or not: the clock, and a keyboard's sign that it is there.
bool isBeat(const EventLogEntry& entry) {
    const auto* midi = entry.variants.midi();
    const auto bytes = midi != nullptr ? midi->message.bytes() : std::span<const std::uint8_t>();
    return !bytes.empty() && (bytes[0] == midi::timingClock || bytes[0] == midi::activeSensing);
}

}  // namespace

std::vector<Rule> QuilloModel::rulesThatRun() const {
    if (rulesNotShown_) {
        return rulesNotShown_->rules;
    }
    std::vector<Rule> running;
    for (const auto& element : rules_) {
        if (!element.off) {
            running.push_back(ruleFromElement(element));
        }
    }
    return running;
}

std::vector<Rule> QuilloModel::rulesOfNewestEvent() const {
    return rulesOfNewestEvent_ ? *rulesOfNewestEvent_ : rulesThatRun();
}

void QuilloModel::keepRulesOfNewestEvent() {
    if (!rulesOfNewestEvent_ && !inLog_.empty()) {
        rulesOfNewestEvent_ = rulesThatRun();
    }
}

void QuilloModel::setRules(std::vector<RuleEntryIdentifiable> rules) {
    keepRulesOfNewestEvent();
    rules_ = std::move(rules);
    whyNotEditable_.reset();
    rulesNotShown_.reset();
    rulesObservers_.notify();
}

void QuilloModel::showRules(std::vector<Rule> rules, RuleShelf shelf) {
    if (const auto reason = whyNotInEditor(rules, shelf)) {
        setNotEditable(*reason + ". The rules run as they are and stay untouched.",
                       PluginData{std::move(rules), std::move(shelf)});
        return;
    }
    auto list = elementsFrom(rules, shelf);
    auto notice = noticeBeforeEditing(list);
    setRules(std::move(list));
    if (notice) {
        alert(*std::move(notice));
    }
}

void QuilloModel::setNotEditable(std::string reason, std::optional<PluginData> rules) {
    keepRulesOfNewestEvent();
    rules_.clear();
    whyNotEditable_ = std::move(reason);
    rulesNotShown_ = std::move(rules);
    rulesObservers_.notify();
}

void QuilloModel::alert(std::string message) {
    if (alertErrorMessage_ == message || std::ranges::find(waitingAlerts_, message) != waitingAlerts_.end()) {
        return;
    }
    if (alertErrorMessage_) {
        waitingAlerts_.push_back(std::move(message));
        return;
    }
    alertErrorMessage_ = std::move(message);
    alertObservers_.notify();
}

void QuilloModel::dismissAlert() {
    if (!alertErrorMessage_) {
        return;
    }
    alertErrorMessage_.reset();
    if (!waitingAlerts_.empty()) {
        alertErrorMessage_ = std::move(waitingAlerts_.front());
        waitingAlerts_.pop_front();
    }
    alertObservers_.notify();
}

void QuilloModel::takeBackAlert(const std::string& message) {
    std::erase(waitingAlerts_, message);
    if (alertErrorMessage_ == message) {
        dismissAlert();
    }
}

void QuilloModel::setWaiting(std::vector<WaitingOutput> waiting, std::size_t count) {
    if (waiting != waiting_ || count != waitingCount_) {
        waiting_ = std::move(waiting);
        waitingCount_ = count;
        waitingObservers_.notify();
    }
}

void QuilloModel::setPanicAnswer(std::string answer) {
    panicAnswer_ = std::move(answer);
    panicObservers_.notify();
}

void QuilloModel::dismissPanicAnswer() {
    if (panicAnswer_) {
        panicAnswer_.reset();
        panicObservers_.notify();
    }
}

void QuilloModel::appendToInLog(const std::vector<EventLogEntry>& entries) {
    inLogCount_ += entries.size();
    if (!std::ranges::all_of(entries, isBeat)) {
        rulesOfNewestEvent_.reset();
    }
    append(inLog_, entries, inLogObservers_);
}

void QuilloModel::appendToOutLog(const std::vector<EventLogEntry>& entries) {
    append(outLog_, entries, outLogObservers_);
}

void QuilloModel::clearInLog() {
    inLog_.clear();
    inLogObservers_.notify();
}

void QuilloModel::clearOutLog() {
    outLog_.clear();
    outLogObservers_.notify();
}

}  // namespace quillo
