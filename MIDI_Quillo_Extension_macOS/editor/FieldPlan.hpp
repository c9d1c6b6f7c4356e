// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Binding.hpp"
#include "editor/ColoredField.hpp"
#include "editor/JuceText.hpp"
#include "editor/MyPicker.hpp"
#include "editor/MyTextInput.hpp"
#include "rules/MIDIVocabulary.hpp"

/// The fields of a card are planned before they are made: a plan knows the field's size, so that the height
/// of a card is known for a thousand rules of which only a few are ever drawn, and makes the field when it is
/// needed.
namespace quillo {

struct FieldPlan {
    juce::String caption;
    juce::String text;  ///< what the field shows now
    bool chevron = false;
    int leastWidth = 0;
    ColorPair colors;
    std::function<std::unique_ptr<FieldView>()> make;
    /// Lets a field that was made under this caption offer what is planned now.
    std::function<void(FieldView& field)> offer;
    MenuExtras extras{};  ///< what the field offers beyond its values

    [[nodiscard]] juce::Point<int> size() const {
        const auto instead = extras.shown ? extras.shown() : juce::String();
        const auto width = FieldView::preferredWidth(caption, instead.isNotEmpty() ? instead : text,
                                                     chevron || extras.row.has_value());
        return {std::max(width, leastWidth), FieldView::preferredHeight(caption.isNotEmpty())};
    }
};

using FieldPlans = std::vector<FieldPlan>;

/// A picker over `menu`; a value that is not in it is shown as `other` says.
template <class Value>
FieldPlan pickerPlan(const juce::String& caption, const ColorPair& colors, Menu<Value> menu,
                     Binding<Value> selection, std::function<juce::String(const Value&)> other = {}) {
    const auto value = selection.get();
    const auto row =
        std::find_if(menu.begin(), menu.end(), [&](const auto& item) { return item.value == value; });
    juce::String text;
    if (row != menu.end()) {
        text = juceText(row->label);
    } else if (other) {
        text = other(value);
    }
    const auto offered = std::make_shared<const Menu<Value>>(std::move(menu));
    return {caption,
            text,
            true,
            0,
            colors,
            [caption, offered, selection = std::move(selection), other = std::move(other)] {
                return std::make_unique<MyPicker<Value>>(caption, *offered, selection, other);
            },
            [offered](FieldView& field) { dynamic_cast<MyPicker<Value>&>(field).setDescription(*offered); }};
}

/// A text input whose text goes through `Formatter`.
template <class Formatter>
FieldPlan inputPlan(const juce::String& caption, const ColorPair& colors,
                    Binding<typename Formatter::Value> value, const juce::String& prompt,
                    Menu<typename Formatter::Value> options = {}) {
    const auto offered = std::make_shared<const Menu<typename Formatter::Value>>(std::move(options));
    return {
        caption,
        juceText(Formatter().format(value.get())),
        !offered->empty(),
        FieldView::preferredWidth({}, prompt, !offered->empty()),
        colors,
        [caption, prompt, value = std::move(value), offered] {
            return std::make_unique<MyTextInput<Formatter>>(caption, value, prompt, *offered);
        },
        [offered](FieldView& field) { dynamic_cast<MyTextInput<Formatter>&>(field).setOptions(*offered); }};
}

template <class Entry, class Value>
FieldPlace placeOf(const Entry& entry, Value Entry::* field) {
    const auto* begin = reinterpret_cast<const std::byte*>(&entry);
    return static_cast<FieldPlace>(reinterpret_cast<const std::byte*>(&(entry.*field)) - begin);
}

/// A field of an entry, read and written through the binding of the whole entry.
template <class Entry, class Value>
Binding<Value> fieldBinding(const Binding<Entry>& entry, Value Entry::* field) {
    const auto changed = [entry, field](Value value) {
        auto whole = entry.get();
        whole.*field = std::move(value);
        return whole;
    };
    return {[entry, field] { return entry.get().*field; },
            [entry, changed](Value value) { entry.set(changed(std::move(value))); },
            [entry, changed, field](Value value, FieldPlace within) {
                auto whole = changed(std::move(value));
                const auto place = placeOf(whole, field);
                entry.step(std::move(whole), place + within);
            }};
}

}  // namespace quillo
