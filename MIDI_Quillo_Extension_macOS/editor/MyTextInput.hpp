// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "editor/Binding.hpp"
#include "editor/JuceText.hpp"
#include "editor/MyFormatter.hpp"
#include "editor/MyTextInputImpl.hpp"
#include "editor/NumberStep.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

/// A value that is typed, or chosen among a few options.
///
///     MyTextInput<VelocityFormatter> velocity("Value", {[&] { ... }, [&](GenericByteV2 value) { ... }},
///                                             "0 - 127",
///                                             {{GenericByteV2::RespectiveTriggerByte{}, "From Trigger"}});
///
/// Text reaches the value through the formatter only, so that the value is valid at all times; a value that
/// comes out as it was is not written. `MyTextInputImpl` says what the keys and the mouse do. [main] only.
template <MyFormatter Formatter>
class MyTextInput final : public MyTextInputImpl {
public:
    using Value = Formatter::Value;

    MyTextInput(juce::String label, Binding<Value> value, juce::String prompt, Menu<Value> options = {},
                Formatter format = {})
        : MyTextInputImpl(std::move(label), std::move(prompt)),
          value_(std::move(value)),
          options_(std::move(options)),
          format_(format) {}

    /// Offers other options from now on.
    void setOptions(Menu<Value> options) {
        options_ = std::move(options);
        refresh();
    }

    [[nodiscard]] juce::String shownText() const override {
        auto text = shownInstead();
        return text.isNotEmpty() ? text : juceText(format_.format(value_.get()));
    }
    [[nodiscard]] bool hasChevron() const override { return !options_.empty() || extras().row; }

protected:
    [[nodiscard]] Typed typed() const override {
        if constexpr (Steppable<Value>) {
            return Typed::number;
        } else if constexpr (std::same_as<Value, std::vector<std::uint8_t>>) {
            return Typed::bytes;
        } else {
            return Typed::text;
        }
    }

    void takeText(const juce::String& text) override { set(format_.parse(text.toStdString())); }

    [[nodiscard]] bool isValue(const juce::String& text) const override {
        return format_.parse(text.toStdString()) == value_.get();
    }

    bool takeSteps(int steps) override {
        if constexpr (Steppable<Value>) {
            if (const auto value = stepped(format_, value_.get(), steps)) {
                step(*value);
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] std::vector<juce::String> optionLabels() const override {
        std::vector<juce::String> labels;
        for (const auto& option : options_) {
            labels.push_back(juceText(option.label));
        }
        return labels;
    }

    [[nodiscard]] std::optional<std::size_t> currentOption() const override {
        const auto value = value_.get();
        const auto found = std::find_if(options_.begin(), options_.end(),
                                        [&value](const auto& option) { return option.value == value; });
        return found != options_.end() ? std::optional(static_cast<std::size_t>(found - options_.begin()))
                                       : std::nullopt;
    }

    void pickOption(std::size_t option) override { set(Value(options_[option].value)); }

private:
    void set(Value value) {
        if (!(value == value_.get())) {
            value_.set(std::move(value));
        }
    }

    void step(Value value) {
        if (!(value == value_.get())) {
            value_.step(std::move(value));
        }
    }

    Binding<Value> value_;
    Menu<Value> options_;
    Formatter format_;
};

}  // namespace quillo
