// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/AudioUnitViewController.hpp"

#include <cstddef>
#include <set>
#include <utility>

#include "rules/RuleLabel.hpp"

namespace quillo {

namespace {

/// Why one of the rules cannot be edited; nothing when all can.
std::optional<std::string> whyNotEditable(const std::vector<Rule>& rules) {
    for (std::size_t position = 0; position < rules.size(); ++position) {
        if (const auto reason = whyNoEntry(rules[position])) {
            return ruleLabel(position, rules[position].name) + " cannot be edited: " + *reason +
                   ". The rules run as they are and stay untouched.";
        }
    }
    return std::nullopt;
}

std::vector<RuleEntryIdentifiable> editableList(const std::vector<Rule>& rules) {
    std::vector<RuleEntryIdentifiable> list;
    list.reserve(rules.size());
    for (const auto& rule : rules) {
        list.push_back(elementFromRule(rule));
    }
    return list;
}

}  // namespace

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
    connectLogs(*unit);
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

/// The callbacks hold the mailboxes and not the controller: they may be called for as long as the unit lives.
void AudioUnitViewController::connectLogs(MIDIQuilloAUAudioUnit& unit) {
    const auto input = std::make_shared<EventMailbox>();
    const auto output = std::make_shared<EventMailbox>();
    unit.logInput = [input](const EventLogEntry& entry) { input->post(entry); };
    unit.logOutput = [output](const EventLogEntry& entry) { output->post(entry); };
    logPoll_ = mainQueue_.onDrain([model = model_, input, output] {
        model->appendToInLog(input->takeAll());
        model->appendToOutLog(output->takeAll());
    });
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
    const auto unit = audioUnit();
    if (!unit) {
        return;
    }
    auto rules = unit->processor->rules();
    if (auto reason = whyNotEditable(rules)) {
        model_->setNotEditable(*std::move(reason), std::move(rules));
        return;
    }
    model_->setRules(editableList(rules));
    if (auto notice = noticeBeforeEditing(rules)) {
        model_->alert(*std::move(notice));
    }
}

void AudioUnitViewController::onRulesChanged(std::vector<Rule> rules) {
    if (const auto unit = audioUnit()) {
        unit->processor->setRules(std::move(rules));
    }
}

void AudioUnitViewController::onInstantMessageClick(const RuleOutputVariantsV2& message) {
    if (const auto unit = audioUnit()) {
        unit->processor->send(message);
    }
}

}  // namespace quillo
