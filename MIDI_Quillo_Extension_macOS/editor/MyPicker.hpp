// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "editor/Binding.hpp"
#include "editor/FieldView.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

/// The body of a picker, whatever the type of its values: a field that opens a menu when it is clicked, and
/// by Space, Return, Up and Down while it has the keyboard focus and is in sight; out of sight they bring it
/// there. [main] only.
class MyPickerImpl : public FieldView {
public:
    explicit MyPickerImpl(juce::String label);

    /// Opens the menu. A disabled picker stays closed.
    void openMenu();

    [[nodiscard]] bool hasChevron() const override { return true; }

    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    [[nodiscard]] virtual std::vector<juce::String> rowLabels() const = 0;
    [[nodiscard]] virtual std::optional<std::size_t> currentRow() const = 0;
    virtual void pickRow(std::size_t row) = 0;
};

/// A choice among listed values.
///
///     MyPicker<TriggerValueV2> channel("Ch", triggerChannelMenu(),
///                                      {[&] { ... }, [&](TriggerValueV2 value) { ... }});
///
/// A value that is not among the listed ones is shown as `describeOther` says, or as nothing, and stays as it
/// is until another one is picked. Picking the value that is there already writes nothing. [main] only.
template <class Value>
class MyPicker final : public MyPickerImpl {
public:
    using DescribeOther = std::function<juce::String(const Value&)>;

    MyPicker(juce::String label, Menu<Value> description, Binding<Value> selection,
             DescribeOther describeOther = {})
        : MyPickerImpl(std::move(label)),
          description_(std::move(description)),
          selection_(std::move(selection)),
          describeOther_(std::move(describeOther)) {}

    /// Offers other values from now on.
    void setDescription(Menu<Value> description) {
        description_ = std::move(description);
        refresh();
    }

    [[nodiscard]] juce::String shownText() const override {
        if (auto text = shownInstead(); text.isNotEmpty()) {
            return text;
        }
        const auto value = selection_.get();
        const auto row = rowOf(value);
        if (row == description_.end()) {
            return describeOther_ ? describeOther_(value) : juce::String();
        }
        return text(*row);
    }

protected:
    [[nodiscard]] std::vector<juce::String> rowLabels() const override {
        std::vector<juce::String> labels;
        labels.reserve(description_.size());
        for (const auto& item : description_) {
            labels.push_back(text(item));
        }
        return labels;
    }

    [[nodiscard]] std::optional<std::size_t> currentRow() const override {
        const auto row = rowOf(selection_.get());
        return row != description_.end() ? std::optional(static_cast<std::size_t>(row - description_.begin()))
                                         : std::nullopt;
    }

    void pickRow(std::size_t row) override {
        const auto value = description_[row].value;
        if (!(value == selection_.get())) {
            selection_.set(value);
        }
    }

private:
    [[nodiscard]] static juce::String text(const MenuItem<Value>& item) {
        return juce::String::fromUTF8(item.label.data(), static_cast<int>(item.label.size()));
    }

    [[nodiscard]] Menu<Value>::const_iterator rowOf(const Value& value) const {
        return std::find_if(description_.begin(), description_.end(),
                            [&value](const auto& item) { return item.value == value; });
    }

    Menu<Value> description_;
    Binding<Value> selection_;
    DescribeOther describeOther_;
};

}  // namespace quillo
