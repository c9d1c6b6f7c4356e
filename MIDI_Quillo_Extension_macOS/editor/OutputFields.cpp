// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardFields.hpp"

#include <string>
#include <utility>

#include "editor/RunExtras.hpp"
#include "editor/ValueFormatters.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t channelCount = 16;
constexpr int lastDataByte = 127;
constexpr int systemExclusiveLeastWidth = 160;
const GenericByteV2 noDataByte = GenericByteV2::Value{255};

using Bytes = Menu<GenericByteV2>;

template <class Value, class FromTrigger>
Menu<Value> startMenu(bool offersTrigger, FromTrigger fromTrigger) {
    Menu<Value> menu;
    if (offersTrigger) {
        menu.push_back({fromTrigger, std::string(fromTriggerLabel)});
    }
    return menu;
}

Bytes startByteMenu(bool offersTrigger) {
    return startMenu<GenericByteV2>(offersTrigger, GenericByteV2::RespectiveTriggerByte{});
}

Menu<RuleOutputChannelV2> channelMenu(bool offersTrigger) {
    auto menu = startMenu<RuleOutputChannelV2>(offersTrigger, RuleOutputChannelV2::TriggerChannel{});
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        menu.push_back({RuleOutputChannelV2::Value{channel}, channelLabel(channel)});
    }
    return menu;
}

Bytes noteMenu(bool offersTrigger) {
    auto menu = startByteMenu(offersTrigger);
    for (int note = lastDataByte; note >= 0; --note) {
        const auto value = static_cast<std::uint8_t>(note);
        menu.push_back({GenericByteV2::Value{value}, noteLabel(value)});
    }
    return menu;
}

Bytes controllerByteMenu(bool offersTrigger) {
    auto menu = startByteMenu(offersTrigger);
    for (const auto& [controller, label] : controllerMenu()) {
        menu.push_back({GenericByteV2::Value{controller}, label});
    }
    return menu;
}

Bytes programMenu(bool offersTrigger) {
    auto menu = startByteMenu(offersTrigger);
    for (int program = 0; program <= lastDataByte; ++program) {
        menu.push_back({GenericByteV2::Value{static_cast<std::uint8_t>(program)}, std::to_string(program)});
    }
    return menu;
}

/// A value that the menu does not offer: a copied one under a trigger that cannot feed it, or a number
/// beyond.
juce::String otherByte(const GenericByteV2& byte) {
    return juceText(VelocityFormatter().format(byte));
}

juce::String otherChannel(const RuleOutputChannelV2& channel) {
    const auto* fixed = channel.getIf<RuleOutputChannelV2::Value>();
    return fixed != nullptr ? juceText(channelLabel(fixed->value)) : juceText(fromTriggerLabel);
}

/// The editors of single fields, each bound to its field and coloured from the palette.
class OutputFieldPlanner {
public:
    OutputFieldPlanner(const Binding<RuleEntry>& rule, const RunBinding& run, const Palette& palette)
        : rule_(rule),
          data_(fieldBinding(rule, &RuleEntry::output)),
          run_(run),
          offered_(triggerChoices(rule.get().trigger.type)),
          palette_(palette) {}

    [[nodiscard]] FieldPlan typeView(const std::function<void(const MIDIRuleType&)>& onChange) const {
        const Binding<MIDIRuleType> type(
            [data = data_]() -> MIDIRuleType { return MIDIRuleType::OutputType{data.get().type}; },
            [onChange](const MIDIRuleType& picked) { onChange(picked); });
        return pickerPlan("Type", {palette_.typeInput, palette_.typeInputSecondaryColor}, outputTypeMenu(),
                          type);
    }

    [[nodiscard]] FieldPlan channelView() const {
        return pickerPlan<RuleOutputChannelV2>(
            juceText(channelCaption), {palette_.channelInput, palette_.channelInputSecondaryColor},
            channelMenu(offered_.channel), fieldBinding(data_, &RuleOutputEntry::channel), otherChannel);
    }

    [[nodiscard]] FieldPlan noteView() const {
        return rising(pickerPlan<GenericByteV2>("Note", byte2Colors(), noteMenu(offered_.noteAndVelocity),
                                                risingBinding(&RuleOutputEntry::note), otherByte),
                      offered_.noteAndVelocity);
    }

    [[nodiscard]] FieldPlan velocityView() const {
        return inputPlan<VelocityFormatter>("Velocity", byte3Colors(),
                                            fieldBinding(data_, &RuleOutputEntry::velocity), "0 - 127",
                                            startByteMenu(offered_.noteAndVelocity));
    }

    [[nodiscard]] FieldPlan controlView() const {
        return pickerPlan<GenericByteV2>("Controller", byte2Colors(),
                                         controllerByteMenu(offered_.controllerAndValue),
                                         fieldBinding(data_, &RuleOutputEntry::controller), otherByte);
    }

    [[nodiscard]] FieldPlan controlValueView() const {
        return rising(inputPlan<ContollerValueFormatter>(juceText(valueCaption), byte3Colors(),
                                                         risingBinding(&RuleOutputEntry::controllerValue),
                                                         "0 - 127",
                                                         startByteMenu(offered_.controllerAndValue)),
                      offered_.controllerAndValue);
    }

    [[nodiscard]] FieldPlan bankView() const {
        return inputPlan<BankFormatter>("Bank", byte2Colors(), fieldBinding(data_, &RuleOutputEntry::bank),
                                        "0 - 127");
    }

    [[nodiscard]] FieldPlan programValueView() const {
        return rising(pickerPlan<GenericByteV2>("Program", byte3Colors(), programMenu(offered_.program),
                                                risingBinding(&RuleOutputEntry::program), otherByte),
                      offered_.program);
    }

    [[nodiscard]] FieldPlan pressureValueView() const {
        return inputPlan<PressureValueFormatter>("Pressure", byte2Colors(),
                                                 fieldBinding(data_, &RuleOutputEntry::pressure), "0 - 127");
    }

    [[nodiscard]] FieldPlan pitchValueView() const {
        const auto pitch = fieldBinding(data_, &RuleOutputEntry::pitch);
        return inputPlan<PitchValueFormatter>("Pitch", byte2Colors(), fieldBinding(pitch, &Pitch::value),
                                              "0 - 16383");
    }

    [[nodiscard]] FieldPlan sysExInput() const {
        auto plan = inputPlan<SystemExclusiveFormatter>(
            "Bytes (hex)", byte2Colors(), fieldBinding(data_, &RuleOutputEntry::systemExclusive),
            "7E 7F 09 01");
        plan.leastWidth = systemExclusiveLeastWidth;
        return plan;
    }

    [[nodiscard]] FieldPlan delayView() const {
        const auto delay = fieldBinding(data_, &RuleOutputEntry::delay);
        return inputPlan<DelayValueFormatter>(juceText(delayCaption),
                                              {palette_.delayInput, palette_.delayInputSecondaryColor},
                                              fieldBinding(delay, &DelayV2::ms), "0");
    }

private:
    [[nodiscard]] FieldPlan rising(FieldPlan plan, bool offersTrigger) const {
        plan.extras = offsetExtras(rule_, run_, offersTrigger);
        return plan;
    }

    /// While the value rises, no row of the menu stands for it; a value that is picked is sent by all rules.
    [[nodiscard]] Binding<GenericByteV2> risingBinding(GenericByteV2 RuleOutputEntry::* field) const {
        const auto plain = fieldBinding(data_, field);
        return {[plain, run = run_] { return run.get().rises ? noDataByte : plain.get(); },
                [plain, run = run_](const GenericByteV2& value) {
                    run.get().rises ? run.sendAlike(value) : plain.set(value);
                },
                [plain](const GenericByteV2& value, FieldPlace place) { plain.step(value, place); }};
    }

    [[nodiscard]] ColorPair byte2Colors() const {
        return {palette_.midi2dByteInput, palette_.midi2dByteInputSecondaryColor};
    }
    [[nodiscard]] ColorPair byte3Colors() const {
        return {palette_.midi3dByteInput, palette_.midi3dByteInputSecondaryColor};
    }

    Binding<RuleEntry> rule_;
    Binding<RuleOutputEntry> data_;
    RunBinding run_;
    TriggerChoices offered_;
    Palette palette_;
};

}  // namespace

FieldPlans outputFields(const Binding<RuleEntry>& rule, const RunBinding& run, const Palette& palette,
                        const std::function<void(const MIDIRuleType&)>& onOutputTypeChange) {
    const OutputFieldPlanner plan(rule, run, palette);
    const auto type = plan.typeView(onOutputTypeChange);
    const auto delay = plan.delayView();
    switch (rule.get().output.type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff:
        return {type, plan.channelView(), plan.noteView(), plan.velocityView(), delay};
    case OutputEntryType::ControlChange:
        return {type, plan.channelView(), plan.controlView(), plan.controlValueView(), delay};
    case OutputEntryType::ProgramChange:
        return {type, plan.channelView(), plan.bankView(), plan.programValueView(), delay};
    case OutputEntryType::ChannelPressure: return {type, plan.channelView(), plan.pressureValueView(), delay};
    case OutputEntryType::PitchWheel: return {type, plan.channelView(), plan.pitchValueView(), delay};
    case OutputEntryType::SystemExclusive: break;
    }
    return {type, plan.sysExInput(), delay};
}

}  // namespace quillo
