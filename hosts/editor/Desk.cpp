// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/editor/Desk.hpp"

#include <variant>

#include "platform/FatalError.hpp"
#include "platform/RenderEventList.hpp"

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

Desk::Desk(std::vector<Rule> rules)
    : controller_(std::make_shared<AudioUnitViewController>(mainQueue_)),
      unit_(makeUnit(*controller_)),
      renderBlock_(unit_->internalRenderBlock()) {
    unit_->processor->setRules(std::move(rules));
    unit_->MIDIOutputEventBlock = [](AUEventSampleTime, std::uint8_t, std::span<const std::uint8_t>) {
        return noErr;
    };
    view_ = std::make_unique<QuilloView>(
        controller_->model(),
        [controller = controller_.get()](std::vector<Rule> changed) {
            controller->onRulesChanged(std::move(changed));
        },
        [controller = controller_.get()](const RuleOutputVariantsV2& message) {
            controller->onInstantMessageClick(message);
        });
    controller_->viewDidLoad();
}

Desk::~Desk() = default;

void Desk::render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages) {
    RenderEventList events(messages.size());
    for (const auto& message : messages) {
        if (!events.tryPushMIDI(now_, message)) {
            fatalError("more messages in a cycle than were counted");
        }
    }
    const AudioTimeStamp start{static_cast<double>(now_)};
    if (renderBlock_(start, frames, events.head()) != noErr) {
        unit_->processor->fatalErrors.raise();
    }
    now_ += frames;
}

}  // namespace quillo
