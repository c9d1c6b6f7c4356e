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
/// A click on the text starts typing with all of it selected, as do Return and F2 while the field has the
/// keyboard focus, and a digit where the value is a number; where there are options, a click on the chevron
/// opens their menu, as does Alt with Down. Return takes what was typed and lets the keyboard go; Tab takes
/// it and goes on, into the next field if that can be typed into. A click elsewhere takes it too, unless it
/// holds nothing, such as a number without a digit. Escape leaves the value as it was, and so does text that
/// was not changed.
///
/// Where the value is a number, Up and Down step it by one and Page Up and Page Down by ten while the field
/// has the focus, typed into or not. The wheel steps it while it is typed into or Ctrl is held; else it
/// scrolls what lies around the field. A key for a field that is scrolled out of sight brings it into sight
/// and does no more. Keys that the field has no use for go on to the parents, also while it is typed into: no
/// number needs a letter, and nothing begins with a blank.
///
/// While nothing is in the field, a prompt says what may be. [main] only.
class MyTextInputImpl : public FieldView {
public:
    MyTextInputImpl(juce::String label, juce::String prompt);
    ~MyTextInputImpl() override;

    /// How many clicks in a row start typing; one unless it is set.
    void setClicks(int clicks) { clicks_ = clicks; }

    [[nodiscard]] bool isEditable() const { return editable_; }
    void startTyping();
    /// Ends typing and takes the text, unless it holds nothing.
    void finishTyping();
    /// Ends typing and forgets the text.
    void cancelTyping();

    /// Finishes typing in whichever field is typed into, which loses the keyboard focus, but for one around
    /// `except`. For what acts on values by a click: a click leaves the focus where it is.
    static void finishTypingElsewhere(const juce::Component* except = nullptr);

    /// The field that is typed into, in whichever editor, or null.
    [[nodiscard]] static MyTextInputImpl* typedInto();

    /// The field that is typed into by means of this view, or the view itself: what is typed into comes and
    /// goes.
    [[nodiscard]] static juce::Component* around(juce::Component* focused);

    /// What is being typed into, or null before anything was.
    [[nodiscard]] juce::TextEditor* typist() const;

    [[nodiscard]] int preferredWidth() const override;
    void resized() override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) override;
    bool keyPressed(const juce::KeyPress& key) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    void paintValue(juce::Graphics& graphics) override;
    [[nodiscard]] bool isActive() const override;

    /// What a text consists of: the digits of a number, pairs of hexadecimal digits, or anything.
    enum class Typed { number, bytes, text };
    [[nodiscard]] virtual Typed typed() const = 0;
    /// Where a click starts typing.
    [[nodiscard]] virtual juce::Rectangle<int> typingArea() const { return boxArea(); }

    /// Takes typed text through the formatter.
    virtual void takeText(const juce::String& text) = 0;
    /// Whether typed text is the value that there is.
    [[nodiscard]] virtual bool isValue(const juce::String& text) const = 0;
    /// Steps the value, by 0 to ask; false when it is nothing that can be stepped.
    virtual bool takeSteps(int steps) = 0;
    [[nodiscard]] virtual std::vector<juce::String> optionLabels() const = 0;
    [[nodiscard]] virtual std::optional<std::size_t> currentOption() const = 0;
    virtual void pickOption(std::size_t option) = 0;

private:
    class Typist;

    void openOptions();
    void take(const juce::String& text);
    void stopTyping();
    void confirmTyping();
    void letGo();
    void goOn(bool forward);
    void paintPrompt(juce::Graphics& graphics, juce::Rectangle<int> area);
    bool step(int steps);
    [[nodiscard]] bool opensOptions(const juce::KeyPress& key) const;
    [[nodiscard]] bool beginsTyping(const juce::KeyPress& key) const;
    [[nodiscard]] bool isUnneeded(const juce::KeyPress& key) const;
    [[nodiscard]] bool holdsNothing(const juce::String& text) const;
    bool takeKey(const juce::KeyPress& key);
    void makeTypist();
    [[nodiscard]] int clicksOf(const juce::MouseEvent& event) const;

    juce::String prompt_;
    int clicks_ = 1;
    bool editable_ = false;
    bool onChevron_ = false;  ///< where the mouse was pressed
    juce::String textBefore_;
    float wheelRest_ = 0;
    std::unique_ptr<Typist> typist_;
};

}  // namespace quillo
