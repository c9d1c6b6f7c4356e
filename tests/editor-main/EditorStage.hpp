// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PopupMenuOverlay.hpp"
#include "editor/RuleHeaderView.hpp"
#include "programs/editor/Desk.hpp"
#include "support/FindBelow.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"

namespace quillo::test {

inline const juce::ModifierKeys ctrl{juce::ModifierKeys::ctrlModifier};
inline const juce::ModifierKeys shift{juce::ModifierKeys::shiftModifier};

inline MyDragAndDropForEachDragHandle& handleOf(RuleView& card) {
    return *findBelow<MyDragAndDropForEachDragHandle>(card);
}

/// A rule of an entry that is the default but for what `change` does to it.
template <class Change>
Rule ruleWith(Change change) {
    RuleEntry entry;
    change(entry);
    return ruleFromEntry(entry);
}

/// The whole editor on a unit, in a window without a screen, and hands to use it with.
class EditorStage {
public:
    explicit EditorStage(std::vector<Rule> rules = {}, juce::Point<int> size = {820, 640})
        : desk(std::move(rules)), window(size.x, size.y) {
        desk.session().logOutput.also(WithoutDeadline([this](const EventLogEntry& entry) {
            const auto bytes = entry.variants.midi()->message.bytes();
            sent.emplace_back(bytes.begin(), bytes.end());
        }));
        window.show(view(), window.getLocalBounds());
    }

    Desk desk;
    OffscreenWindow window;
    /// The messages that have left.
    std::vector<std::vector<std::uint8_t>> sent;

    [[nodiscard]] QuilloView& view() { return desk.view(); }
    [[nodiscard]] RuleListEditor& editor() { return view().editor(); }
    [[nodiscard]] std::vector<Rule> installed() { return desk.session().processor().rules(); }
    [[nodiscard]] UUID id(std::size_t position) { return editor().rules()[position].id; }
    [[nodiscard]] const RuleEntry& entry(std::size_t position) { return editor().rules()[position].rule; }

    [[nodiscard]] std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const auto& rule : installed()) {
            names.push_back(rule.name);
        }
        return names;
    }

    /// The card at a position, brought into sight.
    [[nodiscard]] RuleView& card(std::size_t position = 0) {
        view().list().scrollTo(id(position));
        return *view().card(id(position));
    }

    /// Lets a cycle run and the main thread take what it left.
    void render(const std::vector<std::vector<std::uint8_t>>& messages = {}) {
        desk.render(512, messages);
        desk.drain();
    }

    [[nodiscard]] PopupMenuOverlay& menu() {
        auto* open = dynamic_cast<PopupMenuOverlay*>(view().overlay());
        if (open == nullptr) {
            throw std::logic_error("no menu is open");
        }
        return *open;
    }

    /// Types what is looked for into the open menu and takes the best match.
    void pickInMenu(const juce::String& label) {
        type(window, label);
        if (menu().shownRows().empty()) {
            throw std::logic_error("the menu does not offer " + label.toStdString());
        }
        key(window, juce::KeyPress::returnKey);
    }

    /// Opens a field's menu with the mouse.
    static void openMenu(FieldView& field) {
        const bool isPicker = dynamic_cast<MyPickerImpl*>(&field) != nullptr;
        click(field, (isPicker ? field.boxArea() : field.chevronArea()).getCentre());
    }

    void pick(FieldView& field, const juce::String& label) {
        openMenu(field);
        pickInMenu(label);
    }

    /// Types over what a field holds, and leaves it so.
    void beginTyping(FieldView& field, const juce::String& text) {
        const bool isName = dynamic_cast<RuleHeaderView*>(&field) != nullptr;
        const auto box = field.textArea();
        click(field, isName ? box.getTopLeft() + juce::Point(4, box.getHeight() / 2) : box.getCentre(),
              isName ? 2 : 1);
        type(window, text);
    }

    /// Puts a text in the place of what a field holds.
    void typeInto(FieldView& field, const juce::String& text) {
        beginTyping(field, text);
        key(window, juce::KeyPress::returnKey);
    }

    /// Presses a key. One that nothing with the keyboard focus uses is handed to the view, as the owner of
    /// its window does.
    bool press(int code, juce::ModifierKeys modifiers = {}) {
        const auto character = code < 0x80 ? static_cast<juce::juce_wchar>(code) : 0;
        const juce::KeyPress pressed(code, modifiers, character);
        return key(window, pressed) || view().keyPressed(pressed);
    }

    /// What the focused part of the editor is called; nothing while none is.
    [[nodiscard]] static std::string focus() {
        const auto* focused = juce::Component::getCurrentlyFocusedComponent();
        return focused != nullptr ? focused->getTitle().toStdString() : "";
    }

    /// Goes by Tab to the part that is called so, and says whether there is one.
    bool tabTo(const std::string& title) {
        constexpr int parts = 60;
        for (int part = 0; part < parts && focus() != title; ++part) {
            press(juce::KeyPress::tabKey);
            settle();
        }
        return focus() == title;
    }

    /// Whether a field has a menu that holds this very row.
    [[nodiscard]] bool offers(FieldView& field, const juce::String& label) {
        if (!field.hasChevron()) {
            return false;
        }
        openMenu(field);
        type(window, label);
        const bool offered = !menu().shownRows().empty();
        key(window, juce::KeyPress::escapeKey);
        return offered;
    }
};

/// The field of a section under this caption.
inline FieldView& field(const FieldSection& section, const juce::String& caption) {
    for (const auto& candidate : section.fields()) {
        if (candidate->field().caption() == caption) {
            return candidate->field();
        }
    }
    throw std::logic_error("there is no field " + caption.toStdString());
}

/// The captions of a section's fields, in order.
inline std::vector<std::string> captions(const FieldSection& section) {
    std::vector<std::string> captions;
    for (const auto& shown : section.fields()) {
        captions.push_back(shown->field().caption().toStdString());
    }
    return captions;
}

/// What a section's fields show, in order.
inline std::vector<std::string> texts(const FieldSection& section) {
    std::vector<std::string> texts;
    for (const auto& shown : section.fields()) {
        texts.push_back(shown->field().shownText().toStdString());
    }
    return texts;
}

}  // namespace quillo::test
