// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/AudioUnitViewController.hpp"

#include <set>
#include <utility>

#include "analysis/RuleReasons.hpp"
#include "session/WhatNow.hpp"

namespace quillo {

std::variant<std::shared_ptr<MIDIQuilloAUAudioUnit>, NSError> AudioUnitViewController::createAudioUnit(
    const AudioComponentDescription& description) {
    auto result = MIDIQuilloAUAudioUnit::create(description);
    if (const auto* unit = std::get_if<std::shared_ptr<MIDIQuilloAUAudioUnit>>(&result)) {
        adoptAudioUnit(*unit);
    }
    return result;
}

void AudioUnitViewController::adoptAudioUnit(std::shared_ptr<MIDIQuilloAUAudioUnit> unit) {
    {
        const std::lock_guard lock(audioUnitMutex_);
        audioUnit_ = std::move(unit);
    }
    if (!mainQueue_.isMainThread()) {
        mainQueue_.async([self = shared_from_this()] {
            if (self->isViewLoaded()) {
                self->connectAudioUnit();
            }
        });
    } else if (isViewLoaded()) {
        connectAudioUnit();
    }
}

void AudioUnitViewController::viewDidLoad() {
    viewLoaded_ = true;
    connectAudioUnit();
}

std::shared_ptr<MIDIQuilloAUAudioUnit> AudioUnitViewController::audioUnit() const {
    const std::lock_guard lock(audioUnitMutex_);
    return audioUnit_;
}

void AudioUnitViewController::connectAudioUnit() {
    const auto unit = audioUnit();
    if (!needsConnection_ || !unit) {
        return;
    }
    const auto tree = unit->parameterTree();
    if (!tree) {
        return;
    }
    const std::weak_ptr weak = weak_from_this();
    const auto reload = [weak] {
        if (const auto self = weak.lock()) {
            self->loadRulesLater();
        }
    };
    observer_ = unit->observeAllParameterValues(reload);
    logs_.emplace(unit->logInput, unit->logOutput);
    logPoll_ = mainQueue_.onDrain([weak] {
        if (const auto self = weak.lock()) {
            self->moveLogs();
        }
    });
    std::set<AUParameterAddress> addresses;
    for (const auto& parameter : tree->allParameters()) {
        addresses.insert(parameter.address);
    }
    parameterObserverToken_ =
        tree->tokenByAddingParameterObserver([addresses, reload](AUParameterAddress address) {
            if (addresses.contains(address)) {
                reload();
            }
        });
    needsConnection_ = false;
    loadRulesFromAudioUnit();
}

void AudioUnitViewController::loadRulesLater() {
    if (loadingRules_.exchange(true)) {
        return;
    }
    mainQueue_.async([self = shared_from_this()] {
        self->loadingRules_ = false;
        self->loadRulesFromAudioUnit();
    });
}

void AudioUnitViewController::loadRulesFromAudioUnit() {
    if (const auto unit = audioUnit()) {
        auto [rules, shelf] = unit->show();
        model_->showRules(std::move(rules), std::move(shelf));
    }
}

void AudioUnitViewController::moveLogs() const {
    if (logs_) {
        logs_->moveTo(*model_);
    }
}

void AudioUnitViewController::onRulesChanged(std::vector<Rule> rules, RuleShelf shelf) {
    if (const auto unit = audioUnit()) {
        moveLogs();
        unit->install(std::move(rules), std::move(shelf));
    }
}

void AudioUnitViewController::onInstantMessageClick(const RuleOutputVariantsV2& message) {
    if (const auto unit = audioUnit()) {
        unit->processor->send(message);
    }
}

std::vector<RuleReason> AudioUnitViewController::why(const EventLogEntryVariants& event) {
    const auto unit = audioUnit();
    if (!unit) {
        return {};
    }
    const auto [rules, shelf] = unit->stored();
    return quillo::why(rules, askedEvent(event), shelf);
}

MarkedLog AudioUnitViewController::whatNow() {
    const auto unit = audioUnit();
    return unit ? quillo::whatNow(*model_, unit->processor->sampleRate.load()) : MarkedLog();
}

std::function<void(std::string message)> AudioUnitViewController::userTeller() const {
    return [weak = std::weak_ptr(model_), &queue = mainQueue_](std::string message) {
        queue.async([weak, message = std::move(message)] {
            if (const auto model = weak.lock()) {
                model->alert(message);
            }
        });
    };
}

}  // namespace quillo
