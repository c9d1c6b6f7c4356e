// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardFields.hpp"

#include <string>
#include <utility>
#include <vector>

#include "editor/RunExtras.hpp"
#include "editor/ValueFormatters.hpp"

namespace quillo {

namespace {

/// The editors of single fields, each bound to its field and coloured from the palette.
class TriggerFieldPlanner {
public:
    TriggerFieldPlanner(const Binding<RuleEntry>& rule, const RunBinding& run, const Palette& palette)
        : rule_(rule), data_(fieldBinding(rule, &RuleEntry::trigger)), run_(run), palette_(palette) {}

    [[nodiscard]] FieldPlan triggerTypeView(const std::function<void(TriggerEntryType)>& onChange) const {
        const Binding<TriggerEntryType> type([data = data_] { return data.get().type; }, onChange);
        return pickerPlan("Type", triggerColors(), triggerTypeMenu(), type);
    }

    [[nodiscard]] FieldPlan triggerChannelView() const {
        return pickerPlan<TriggerValueV2>(
            juceText(channelCaption), {palette_.channelInput, palette_.channelInputSecondaryColor},
            triggerChannelMenu(), fieldBinding(data_, &RuleTriggerEntry::channel),
            [](const TriggerValueV2& value) {
                return juceText(channelLabel(value.getIf<TriggerValueV2::Value>()->value));
            });
    }

    [[nodiscard]] FieldPlan triggerNoteView() const {
        auto plan = pickerPlan<TriggerValueV2>(
            "Note", byte2Colors(), triggerNoteMenu(), fieldBinding(data_, &RuleTriggerEntry::note),
            [](const TriggerValueV2& value) { return juceText(TriggerValueFormatter().format(value)); });
        plan.extras = rangeExtras(rule_, run_);
        return plan;
    }

    [[nodiscard]] FieldPlan triggerControlChangeView() const {
        return pickerPlan<std::uint8_t>("Controller", byte2Colors(), controllerMenu(),
                                        fieldBinding(data_, &RuleTriggerEntry::controller),
                                        [](const std::uint8_t& value) { return juce::String(int{value}); });
    }

    [[nodiscard]] FieldPlan triggerControlChangeValueView() const {
        return valueOrAny(juceText(valueCaption), &RuleTriggerEntry::controllerValue);
    }

    [[nodiscard]] FieldPlan triggerProgramView() const {
        return valueOrAny("Program", &RuleTriggerEntry::program);
    }

    [[nodiscard]] FieldPlan passthroughView() const {
        auto menu = passThroughMenu();
        if (run_.get().count > 1) {
            std::erase_if(menu, [](const auto& row) { return row.value == PassThroughV2::EatNonMatching; });
        }
        return pickerPlan("Incoming", triggerColors(), std::move(menu),
                          fieldBinding(data_, &RuleTriggerEntry::passThrough));
    }

private:
    [[nodiscard]] FieldPlan valueOrAny(const juce::String& caption,
                                       TriggerValueV2 RuleTriggerEntry::* field) const {
        auto plan = inputPlan<TriggerValueFormatter>(
            caption, {palette_.midi3dByteInput, palette_.midi3dByteInputSecondaryColor},
            fieldBinding(data_, field), juceText(anyLabel),
            {{TriggerValueV2::AnyValue{}, std::string(anyLabel)}});
        plan.extras = rangeExtras(rule_, run_);
        return plan;
    }

    [[nodiscard]] ColorPair triggerColors() const {
        return {palette_.triggerInput, palette_.triggerInputSecondaryColor};
    }
    [[nodiscard]] ColorPair byte2Colors() const {
        return {palette_.midi2dByteInput, palette_.midi2dByteInputSecondaryColor};
    }

    Binding<RuleEntry> rule_;
    Binding<RuleTriggerEntry> data_;
    RunBinding run_;
    Palette palette_;
};

}  // namespace

FieldPlans triggerFields(const Binding<RuleEntry>& rule, const RunBinding& run, const Palette& palette,
                         const std::function<void(TriggerEntryType)>& onTriggerTypeChange) {
    const TriggerFieldPlanner plan(rule, run, palette);
    const auto type = plan.triggerTypeView(onTriggerTypeChange);
    switch (rule.get().trigger.type) {
    case TriggerEntryType::OnLoad: return {type};
    case TriggerEntryType::NoteOn:
    case TriggerEntryType::NoteOff:
        return {type, plan.triggerChannelView(), plan.triggerNoteView(), plan.passthroughView()};
    case TriggerEntryType::ControlChange:
        return {type, plan.triggerChannelView(), plan.triggerControlChangeView(),
                plan.triggerControlChangeValueView(), plan.passthroughView()};
    case TriggerEntryType::ProgramChange:
        return {type, plan.triggerChannelView(), plan.triggerProgramView(), plan.passthroughView()};
    case TriggerEntryType::MIDIStart:
    case TriggerEntryType::MIDIContinue:
    case TriggerEntryType::MIDIStop:
    case TriggerEntryType::HostStart:
    case TriggerEntryType::HostContinue:
    case TriggerEntryType::HostStop: break;
    }
    return {type, plan.passthroughView()};
}

}  // namespace quillo
