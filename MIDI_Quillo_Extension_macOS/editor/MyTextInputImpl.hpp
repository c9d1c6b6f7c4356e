// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "editor/FieldView.hpp"

namespace quillo {

/// The body of a text input, whatever its formatter.
///
/// A click on the text starts typing with all of it selected, as does Return while the field has the keyboard
/// focus; where there are options, a click on the chevron opens their menu, as does Alt with Down. Return, Tab
/// and losing the focus take what was typed; Escape leaves the value as it was, and so does text that was not
/// changed. Where the value is a number, Up and Down step it by one and Page Up and Page Down by ten while the
/// field has the focus, typed into or not, and the wheel steps it too; without the focus the wheel scrolls what
/// lies around the field. Every other key goes on to the parents, unless the field is being typed into.
/// [main] only.
class MyTextInputImpl : public FieldView {
public:
    MyTextInputImpl(juce::String label, juce::String prompt);
    ~MyTextInputImpl() override;

    /// How many clicks in a row start typing; one unless it is set.
    void setClicks(int clicks) { clicks_ = clicks; }

    [[nodiscard]] bool isEditable() const { return editable_; }
    void startTyping();
    /// Ends typing and takes the text.
    void finishTyping();
    /// Ends typing and forgets the text.
    void cancelTyping();

    /// What is being typed into, or null before anything was.
    [[nodiscard]] juce::TextEditor* typist() const;

    [[nodiscard]] int preferredWidth() const override;
    void resized() override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) override;
    bool keyPressed(const juce::KeyPress& key) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    void paintValue(juce::Graphics& graphics) override;
    [[nodiscard]] bool isActive() const override;

    /// Takes typed text through the formatter.
    virtual void takeText(const juce::String& text) = 0;
    /// Steps the value; false when it is nothing that can be stepped.
    virtual bool takeSteps(int steps) = 0;
    [[nodiscard]] virtual std::vector<juce::String> optionLabels() const = 0;
    [[nodiscard]] virtual std::optional<std::size_t> currentOption() const = 0;
    virtual void pickOption(std::size_t option) = 0;

private:
    class Typist;

    void openOptions();
    void stopTyping();
    bool step(int steps);
    bool stepByKey(const juce::KeyPress& key);
    bool typed(const juce::KeyPress& key);
    void makeTypist();
    [[nodiscard]] int clicksOf(const juce::MouseEvent& event) const;

    juce::String prompt_;
    int clicks_ = 1;
    bool editable_ = false;
    juce::String textBefore_;
    float wheelRest_ = 0;
    std::unique_ptr<Typist> typist_;
};

}  // namespace quillo
