// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/Session.hpp"

#include <exception>
#include <utility>

#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

Session::Session(HostTransport transport) : renderer_(processor_, logInput, logOutput, transport) {}

Session::~Session() = default;

bool Session::isSampleRate(double rate) {
    constexpr double highest = 1e9;
    return rate >= 1.0 && rate <= highest;
}

std::optional<std::string> Session::setSampleRate(double rate) {
    if (!isSampleRate(rate)) {
        return "MIDI Quillo cannot render at a sample rate of " + std::to_string(rate);
    }
    const std::lock_guard lock(installing_);
    const auto before = processor_.sampleRate.load();
    const auto now = static_cast<std::uint64_t>(rate);
    if (now == before) {
        return std::nullopt;
    }
    try {
        processor_.sampleRate = now;
        processor_.setRules(processor_.rules());
        return std::nullopt;
    } catch (const std::exception& error) {
        processor_.sampleRate = before;
        return wordsOf(error);
    }
}

std::vector<std::uint8_t> Session::save() {
    return PluginData{processor_.rules()}.write();
}

std::optional<std::string> Session::restore(std::span<const std::uint8_t> document) {
    auto reason = whyNotInstalled(document);
    if (reason) {
        reason->insert(0, "The saved rules cannot be restored: ");
        tellUser(*reason);
    }
    return reason;
}

std::optional<std::string> Session::whyNotInstalled(std::span<const std::uint8_t> document) try {
    try {
        install(PluginData::read(document).rules);
        return std::nullopt;
    } catch (const DecodingError& error) {
        return problemInWords(error, document);
    }
} catch (const std::exception& error) {
    return wordsOf(error);
}

void Session::install(std::vector<Rule> rules) {
    const std::lock_guard lock(installing_);
    processor_.setRules(std::move(rules));
    restored_ = true;
}

void Session::viewDidLoad() {
    if (!logs_) {
        logs_.emplace(logInput, logOutput);
        restored_ = true;
    }
    showRestoredRules();
}

void Session::onRulesChanged(std::vector<Rule> rules) {
    {
        const std::lock_guard lock(installing_);
        processor_.setRules(std::move(rules));
    }
    onEdit_();
}

void Session::onInstantMessageClick(const RuleOutputVariantsV2& message) {
    processor_.send(message);
}

void Session::takeBack(const std::string& message) {
    if (const auto shown = alerts_.remove(message)) {
        model_->takeBackAlert(*shown);
    }
}

void Session::drain() {
    tellFatalError();
    tellRefusals();
    if (logs_) {
        logs_->moveTo(*model_);
        showRestoredRules();
    }
    showNextAlert();
}

void Session::showRestoredRules() {
    if (restored_.exchange(false)) {
        model_->showRules(processor_.rules());
    }
}

/// The next one waits here, where it takes little room, and not in the model.
void Session::showNextAlert() {
    if (model_->alertErrorMessage()) {
        return;
    }
    if (auto alert = alerts_.takeNext()) {
        model_->alert(*std::move(alert));
    }
}

/// A message that the host has no room for today it has no room for tomorrow. However many more are refused
/// meanwhile, a drain ends.
void Session::tellRefusals() {
    std::optional<std::vector<Rule>> rules;
    for (auto left = RefusedMessages::room; left > 0; --left) {
        const auto message = renderer_.refused().takeNext();
        if (!message) {
            return;
        }
        if (refusals_.size() == mostRefusals || !refusals_.insert(*message).second) {
            continue;
        }
        if (!rules) {
            rules = processor_.rules();
        }
        auto text = refusalText(*message, *rules);
        if (refusalsTold_.insert(text).second) {
            tellUser(std::move(text));
        }
    }
}

/// A cycle that failed for good would fail again and again: its error is told once.
void Session::tellFatalError() {
    if (fatalErrorTold_) {
        return;
    }
    if (const auto error = processor_.fatalErrors.error()) {
        fatalErrorTold_ = true;
        tellUser("MIDI Quillo cannot go on. " + error->inWords());
    }
}

}  // namespace quillo
