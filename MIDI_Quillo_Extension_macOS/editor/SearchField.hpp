// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MyIconButton.hpp"

namespace quillo {

/// What a search field asks for.
struct SearchActions {
    std::function<void(const juce::String& typed)> onType;
    std::function<void(bool forward)> onNext;  ///< Return; backward with Shift
    std::function<void()> onGoThere;           ///< Down: to what was found last
    std::function<void()> onEnd;               ///< Escape
    std::function<void()> onEnter;             ///< a click or Tab gives it the keyboard
};

/// The field in which is typed what is looked for, with a magnifying glass, the number of finds, and a cross
/// that ends the search. [main] only.
class SearchField final : public juce::Component {
public:
    explicit SearchField(SearchActions actions);
    ~SearchField() override;

    /// Gives it the keyboard, with what is in it selected.
    void begin();
    /// The same with this text in it, behind which is typed on.
    void begin(const juce::String& text);
    /// Empties it without asking for anything.
    void clear();
    /// How much was found, as it is shown: "3 found".
    void showFinds(const juce::String& words);
    [[nodiscard]] const juce::String& finds() const { return finds_; }

    /// Whether its cross is there even while nothing is typed: where the field has a place for a time only.
    void setClosable(bool closable);

    [[nodiscard]] juce::TextEditor& text();
    [[nodiscard]] MyIconButton& endButton() { return end_; }

    /// Lets the keyboard go from a search field that has it, unless the field holds `except`.
    static void letGoElsewhere(const juce::Component* except);

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    class Typist;

    void typed();

    SearchActions actions_;
    juce::String sought_;
    juce::String finds_;
    std::unique_ptr<Typist> typist_;
    MyIconButton end_;
    bool closable_ = false;
};

}  // namespace quillo
