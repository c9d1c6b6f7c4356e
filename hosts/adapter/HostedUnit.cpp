// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/HostedUnit.hpp"

#include <exception>
#include <utility>
#include <variant>

#include "persistence/PluginData.hpp"
#include "persistence/ProblemInWords.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

std::shared_ptr<MIDIQuilloAUAudioUnit> makeUnit(AudioUnitViewController& controller) {
    auto made = controller.createAudioUnit(midiQuilloComponent);
    if (const auto* error = std::get_if<NSError>(&made)) {
        fatalError("the unit cannot be made: status " + std::to_string(error->code));
    }
    return std::get<std::shared_ptr<MIDIQuilloAUAudioUnit>>(std::move(made));
}

}  // namespace

HostedUnit::HostedUnit(HostTransport transport)
    : controller_(std::make_shared<AudioUnitViewController>(mainQueue_)),
      unit_(makeUnit(*controller_)),
      renderer_(*unit_, transport) {}

HostedUnit::~HostedUnit() = default;

bool HostedUnit::isSampleRate(double rate) {
    constexpr double highest = 1e9;
    return rate >= 1.0 && rate <= highest;
}

std::optional<std::string> HostedUnit::activate(double sampleRate, std::uint32_t longestBlock) {
    if (!isSampleRate(sampleRate)) {
        return "MIDI Quillo cannot render at a sample rate of " + std::to_string(sampleRate);
    }
    const auto before = unit_->processor->sampleRate.load();
    try {
        setSampleRate(sampleRate);
        unit_->maximumFramesToRender = longestBlock;
        if (const auto error = unit_->allocateRenderResources()) {
            return "MIDI Quillo cannot get ready to render: status " + std::to_string(error->code);
        }
        if (unit_->processor->sampleRate != before) {
            unit_->processor->setRules(unit_->processor->rules());
        }
        return std::nullopt;
    } catch (const std::exception& error) {
        unit_->processor->sampleRate = before;
        return wordsOf(error);
    }
}

void HostedUnit::setSampleRate(double sampleRate) {
    for (auto* bus : {&unit_->inputBusses()[0], &unit_->outputBusses()[0]}) {
        auto format = bus->format();
        format.sampleRate = sampleRate;
        if (bus->setFormat(format) != noErr) {
            fatalError("the unit refuses a sample rate of " + std::to_string(sampleRate));
        }
    }
}

void HostedUnit::deactivate() {
    unit_->deallocateRenderResources();
}

std::vector<std::uint8_t> HostedUnit::save() const {
    const auto state = unit_->fullState();
    return std::get<Data>(state.value().at(stateKey));
}

std::optional<std::string> HostedUnit::restore(std::span<const std::uint8_t> document) {
    auto reason = whyNotInstalled(document);
    if (reason) {
        reason->insert(0, "The saved rules cannot be restored: ");
        tellUser(*reason);
    }
    return reason;
}

std::optional<std::string> HostedUnit::whyNotInstalled(std::span<const std::uint8_t> document) try {
    try {
        install(document);
        return std::nullopt;
    } catch (const DecodingError& error) {
        return problemInWords(error, document);
    }
} catch (const std::exception& error) {
    return wordsOf(error);
}

/// The unit itself takes a document that it cannot read for an empty list; so it is read here first.
void HostedUnit::install(std::span<const std::uint8_t> document) {
    static_cast<void>(PluginData::read(document));
    unit_->setFullState(StateDictionary{{stateKey, Data(document.begin(), document.end())}});
}

void HostedUnit::viewDidLoad() {
    controller_->viewDidLoad();
}

void HostedUnit::onRulesChanged(std::vector<Rule> rules) {
    controller_->onRulesChanged(std::move(rules));
    onEdit_();
}

void HostedUnit::onInstantMessageClick(const RuleOutputVariantsV2& message) {
    controller_->onInstantMessageClick(message);
}

void HostedUnit::takeBack(const std::string& message) {
    if (auto shown = alerts_.remove(message)) {
        mainQueue_.async([model = model(), text = *std::move(shown)] { model->takeBackAlert(text); });
    }
}

void HostedUnit::drain() {
    tellFatalError();
    tellRefusals();
    mainQueue_.drain();
    showNextAlert();
}

/// The next one waits here, where it takes little room, and not in the model.
void HostedUnit::showNextAlert() {
    auto& model = *controller_->model();
    if (model.alertErrorMessage()) {
        return;
    }
    if (auto alert = alerts_.takeNext()) {
        model.alert(*std::move(alert));
    }
}

/// A message that the host has no room for today it has no room for tomorrow. However many more are refused
/// meanwhile, a drain ends.
void HostedUnit::tellRefusals() {
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
            rules = unit_->processor->rules();
        }
        auto text = refusalText(*message, *rules);
        if (refusalsTold_.insert(text).second) {
            tellUser(std::move(text));
        }
    }
}

/// A cycle that failed for good would fail again and again: its error is told once.
void HostedUnit::tellFatalError() {
    if (fatalErrorTold_) {
        return;
    }
    if (const auto error = unit_->processor->fatalErrors.error()) {
        fatalErrorTold_ = true;
        tellUser("MIDI Quillo cannot go on. " + error->inWords());
    }
}

}  // namespace quillo
