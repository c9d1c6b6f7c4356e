// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/Session.hpp"

#include <algorithm>
#include <exception>
#include <utility>

#include "analysis/RuleReasons.hpp"
#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/FatalError.hpp"
#include "session/RenderRequests.hpp"
#include "session/WhatNow.hpp"

namespace quillo {

namespace {

/// The hits of the rules that run, each in its rule's place in the list that is shown; none where others are
/// shown than run.
std::vector<RuleHits> inPlaces(std::span<const RuleHits> hits,
                               const std::vector<RuleEntryIdentifiable>& shown) {
    const auto running = std::ranges::count(shown, false, &RuleEntryIdentifiable::off);
    if (!std::cmp_equal(running, hits.size())) {
        return {};
    }
    std::vector<RuleHits> placed(shown.size());
    auto next = hits.begin();
    for (std::size_t place = 0; place < shown.size(); ++place) {
        placed[place] = shown[place].off ? RuleHits() : *next++;
    }
    return placed;
}

}  // namespace

Session::Session(HostTransport transport)
    : renderer_(processor_, logInput, logOutput, transport),
      rulesShown_(model_->observeRules([this] { showHits(); })) {}

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
        const auto was = HitHistory::Moment{renderer_.reached(), before};
        const auto replaced = processor_.setRules(processor_.rules(), shelf_);
        hits_.follow(*replaced, shelf_, {replaced->rules, shelf_}, was);
        return std::nullopt;
    } catch (const std::exception& error) {
        processor_.sampleRate = before;
        return wordsOf(error);
    }
}

std::vector<std::uint8_t> Session::save() {
    return stored().write();
}

std::optional<std::vector<std::uint8_t>> Session::trySave() try {
    return save();
} catch (const std::exception& error) {
    tellUser("The rules cannot be saved with the project: " + wordsOf(error));
    return std::nullopt;
}

PluginData Session::stored() {
    const std::lock_guard lock(installing_);
    return {processor_.rules(), shelf_};
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
    if (document.size() > longestDocument) {
        return "they are larger than 128 MiB, which no list of rules is.";
    }
    try {
        auto data = PluginData::read(document);
        install(std::move(data.rules), std::move(data.shelf));
        return std::nullopt;
    } catch (const DecodingError& error) {
        return problemInWords(error, document);
    }
} catch (const std::exception& error) {
    return wordsOf(error);
}

void Session::install(std::vector<Rule> rules, RuleShelf shelf) {
    const std::lock_guard lock(installing_);
    processor_.setRules(std::move(rules), shelf);
    shelf_ = std::move(shelf);
    hits_.forget();
    restored_ = true;
    endNotesIfAsked();
}

void Session::viewDidLoad() {
    if (!logs_) {
        logs_.emplace(logInput, logOutput);
        restored_ = true;
    }
    showRestoredRules();
}

void Session::onRulesChanged(std::vector<Rule> rules, RuleShelf shelf) {
    if (logs_) {
        logs_->moveTo(*model_);
    }
    {
        const std::lock_guard lock(installing_);
        if (logs_ && restored_) {
            return;
        }
        PluginData after{std::move(rules), std::move(shelf)};
        const auto replaced = processor_.setRules(after.rules, after.shelf);
        hits_.follow(*replaced, shelf_, after, now());
        shelf_ = std::move(after.shelf);
    }
    endNotesIfAsked();
    onEdit_();
}

void Session::endNotesIfAsked() {
    if (notesEnd_) {
        renderer_.requests().ask(RenderRequests::Kind::endOfNotes);
    }
}

HitHistory::Moment Session::now() {
    return {renderer_.reached(), processor_.sampleRate.load()};
}

/// What was copied the last time may wait no longer.
void Session::watchWaiting(bool isSeen) {
    waitingIsWatched_ = isSeen;
    waiting_.clear();
    if (isSeen) {
        renderer_.snapshot().request();
    }
}

void Session::cancelWaiting(std::uint64_t number) {
    cancellations_.push_back(number);
    handOnCancellation();
}

void Session::cancelAllWaiting() {
    renderer_.requests().ask(RenderRequests::Kind::cancelAll);
}

void Session::panic() {
    renderer_.requests().ask(RenderRequests::Kind::panic);
}

void Session::sendAllOnLoad() {
    renderer_.requests().ask(RenderRequests::Kind::load);
}

void Session::onInstantMessageClick(const RuleOutputVariantsV2& message) {
    processor_.send(message);
}

std::vector<RuleReason> Session::why(const EventLogEntryVariants& event) {
    const auto [rules, shelf] = stored();
    return quillo::why(rules, askedEvent(event), shelf);
}

MarkedLog Session::whatNow() {
    return quillo::whatNow(*model_, processor_.sampleRate.load());
}

void Session::takeBack(const std::string& message) {
    if (const auto shown = alerts_.remove(message)) {
        model_->takeBackAlert(*shown);
    }
}

void Session::drain() {
    tellFatalError();
    tellRefusals();
    tellLoss();
    if (logs_) {
        logs_->moveTo(*model_);
        showRestoredRules();
        showHits();
        showWaiting();
    }
    showPanic();
    handOnCancellation();
    showNextAlert();
}

/// Nothing where the rules that run are not those that are shown. An observer of the model may install
/// others.
void Session::showHits() {
    auto hits = [this] {
        const std::lock_guard lock(installing_);
        return hits_.hits(*processor_.compiledRules(), now());
    }();
    model_->setHits(inPlaces(hits, model_->rules()));
}

/// The next copies are asked for at once: they need a block or more, which a host that lets the plug-in sleep
/// does not render while nothing waits.
void Session::showWaiting() {
    if (waitingIsWatched_) {
        if (const auto copies = renderer_.snapshot().copies()) {
            waiting_.assign(copies->begin(), copies->end());
            std::ranges::sort(waiting_, {},
                              [](const auto& copy) { return std::pair(copy.output.time, copy.number); });
        }
        renderer_.snapshot().request();
    }
    const auto count = renderer_.waitingOutputs();
    if (count == 0) {
        waiting_.clear();
    }
    model_->setWaiting(waitingOutputs(), count);
}

/// What was copied while it waited may have left since.
std::vector<WaitingOutput> Session::waitingOutputs() {
    const auto [reached, rate] = now();
    std::vector<WaitingOutput> outputs;
    outputs.reserve(waiting_.size());
    for (const auto& [number, output] : waiting_) {
        if (output.time >= reached) {
            const auto seconds = static_cast<double>(output.time - reached) / static_cast<double>(rate);
            outputs.push_back({number, seconds, output.message, std::string(output.ruleName.text())});
        }
    }
    return outputs;
}

/// One at a time: the render thread takes one in each block.
void Session::handOnCancellation() {
    while (!cancellations_.empty() && renderer_.requests().tryCancel(cancellations_.front())) {
        cancellations_.pop_front();
    }
}

void Session::showPanic() {
    if (const auto result = renderer_.requests().takeAnswer()) {
        model_->setPanicAnswer(inWords(*result));
    }
}

void Session::showRestoredRules() {
    if (restored_.exchange(false)) {
        auto [rules, shelf] = stored();
        model_->showRules(std::move(rules), std::move(shelf));
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
    std::optional<PluginData> stored;
    for (auto left = RefusedMessages::room; left > 0; --left) {
        const auto message = renderer_.refused().takeNext();
        if (!message) {
            return;
        }
        if (refusals_.size() == mostRefusals || std::ranges::find(refusals_, *message) != refusals_.end()) {
            continue;
        }
        refusals_.push_back(*message);
        if (!stored) {
            stored = this->stored();
        }
        auto text = refusalText(*message, stored->rules, stored->shelf);
        if (refusalsTold_.insert(text).second) {
            tellUser(std::move(text));
        }
    }
}

/// Once: where more are delayed than there is room for, it happens with every message.
void Session::tellLoss() {
    if (lossTold_ || !renderer_.hasLostOutputs()) {
        return;
    }
    lossTold_ = true;
    static_assert(RuleProcessor::delayCapacity == 10'000);
    tellUser(
        "More than 10,000 delayed outputs waited at one time: those that were to leave first are lost, the "
        "ends of notes perhaps among them. Shorter delays, or fewer rules with one, let less wait.");
}

/// A cycle that failed for good would fail again and again: its error is reported once.
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
