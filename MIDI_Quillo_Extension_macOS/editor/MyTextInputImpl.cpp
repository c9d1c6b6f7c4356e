// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextInputImpl.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/FieldAccessibility.hpp"
#include "editor/Fonts.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

constexpr int pageSteps = 10;
/// How far a wheel without notches turns for one step.
constexpr float turnOfStep = 0.1F;
/// What is typed begins this far in, and so in the place of the value that it replaces.
constexpr int caretRoom = 1;

}  // namespace

/// What is typed into. It is kept, hidden, once it was made, because keys end typing in the middle of its own
/// functions.
class MyTextInputImpl::Typist final : public juce::TextEditor {
public:
    explicit Typist(MyTextInputImpl& field) : field_(field) {
        setBorder({});
        setIndents(0, 0);
        setJustification(juce::Justification::centredLeft);
        setPopupMenuEnabled(false);
        setColour(backgroundColourId, juce::Colours::transparentBlack);
        setColour(outlineColourId, juce::Colours::transparentBlack);
        setColour(focusedOutlineColourId, juce::Colours::transparentBlack);
        setColour(shadowColourId, juce::Colours::transparentBlack);
    }

    void takeColours(juce::Colour text) {
        setFont(textFont(style::valueText));
        applyFontToAllText(getFont());
        applyColourToAllText(text);
        setColour(textColourId, text);
        setColour(highlightColourId, text.withAlpha(0.3F));
        setColour(highlightedTextColourId, text);
        setColour(juce::CaretComponent::caretColourId, text);
    }

    /// Shows a text with all of it selected and the caret behind it.
    void showSelected(const juce::String& text) {
        setText(text, false);
        moveCaretToTop(false);
        moveCaretToEnd(true);
    }

    bool keyPressed(const juce::KeyPress& key) override {
        return field_.typed(key) || juce::TextEditor::keyPressed(key);
    }

    void focusLost(FocusChangeType cause) override {
        juce::TextEditor::focusLost(cause);
        field_.finishTyping();
    }

    void mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) override {
        field_.mouseWheelMove(event.getEventRelativeTo(&field_), wheel);
    }

private:
    MyTextInputImpl& field_;
};

MyTextInputImpl::MyTextInputImpl(juce::String label, juce::String prompt)
    : FieldView(std::move(label)), prompt_(std::move(prompt)) {
    if (caption().isEmpty()) {
        setTitle(prompt_);
    }
    setMouseCursor(juce::MouseCursor::IBeamCursor);
}

MyTextInputImpl::~MyTextInputImpl() {
    editable_ = false;
}

juce::TextEditor* MyTextInputImpl::typist() const {
    return typist_.get();
}

int MyTextInputImpl::preferredWidth() const {
    const auto text = shownText();
    return FieldView::preferredWidth(caption(), text.isEmpty() ? prompt_ : text, hasChevron());
}

void MyTextInputImpl::makeTypist() {
    if (typist_ == nullptr) {
        typist_ = std::make_unique<Typist>(*this);
        typist_->setTitle(getTitle());
        addChildComponent(*typist_);
    }
    typist_->takeColours(displayColour(environment<MyPrimaryColor>(*this)));
}

void MyTextInputImpl::startTyping() {
    if (editable_ || !isEnabled()) {
        return;
    }
    makeTypist();
    editable_ = true;
    textBefore_ = shownText();
    resized();
    typist_->setVisible(true);
    typist_->grabKeyboardFocus();
    typist_->showSelected(textBefore_);
    repaint();
}

void MyTextInputImpl::stopTyping() {
    editable_ = false;
    typist_->setVisible(false);
    repaint();
}

void MyTextInputImpl::finishTyping() {
    if (!editable_) {
        return;
    }
    const auto text = typist_->getText();
    const SafePointer<MyTextInputImpl> field(this);
    stopTyping();
    if (text != textBefore_) {
        takeText(text);
    }
    if (field != nullptr) {
        refresh();
    }
}

void MyTextInputImpl::cancelTyping() {
    if (editable_) {
        stopTyping();
    }
}

void MyTextInputImpl::resized() {
    if (typist_ != nullptr) {
        typist_->setBounds(textArea().withLeft(textArea().getX() - caretRoom));
    }
}

bool MyTextInputImpl::isActive() const {
    return editable_ || FieldView::isActive();
}

void MyTextInputImpl::paintValue(juce::Graphics& graphics) {
    if (editable_) {
        return;
    }
    if (shownText().isEmpty()) {
        paintText(graphics, prompt_, displayColour(environment<PaletteKey>(*this).secondaryText));
    } else {
        FieldView::paintValue(graphics);
    }
}

int MyTextInputImpl::clicksOf(const juce::MouseEvent& event) const {
    return std::max(event.getNumberOfClicks(), environment<MyClickOverlayClicks>(*this));
}

void MyTextInputImpl::mouseUp(const juce::MouseEvent& event) {
    if (!event.mouseWasClicked() || event.mods.isPopupMenu() || !isEnabled()) {
        return;
    }
    if (chevronArea().contains(event.getPosition())) {
        openOptions();
    } else if (boxArea().contains(event.getPosition()) && clicksOf(event) >= clicks_) {
        startTyping();
    }
}

void MyTextInputImpl::openOptions() {
    finishTyping();
    PopupMenuOverlay::open(*this, boxArea(), {getTitle(), optionLabels(), currentOption()},
                           [field = SafePointer(this)](std::size_t option) {
                               if (field != nullptr) {
                                   field->pickOption(option);
                               }
                               if (field != nullptr) {
                                   field->refresh();
                               }
                           });
}

void MyTextInputImpl::mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) {
    if (!hasKeyboardFocus(true)) {
        juce::Component::mouseWheelMove(event, wheel);
        return;
    }
    const auto turn = wheel.isReversed ? -wheel.deltaY : wheel.deltaY;
    wheelRest_ = wheel.isSmooth ? wheelRest_ + turn : std::copysign(turnOfStep, turn);
    const auto steps = static_cast<int>(std::lround(std::trunc(wheelRest_ / turnOfStep)));
    wheelRest_ -= static_cast<float>(steps) * turnOfStep;
    if (steps != 0 && !step(steps)) {
        juce::Component::mouseWheelMove(event, wheel);
    }
}

bool MyTextInputImpl::keyPressed(const juce::KeyPress& key) {
    if (!isEnabled()) {
        return false;
    }
    if (key == juce::KeyPress::returnKey) {
        startTyping();
        return true;
    }
    if (hasChevron() && key == juce::KeyPress(juce::KeyPress::downKey, juce::ModifierKeys::altModifier, 0)) {
        openOptions();
        return true;
    }
    return stepByKey(key);
}

bool MyTextInputImpl::typed(const juce::KeyPress& key) {
    if (key == juce::KeyPress::returnKey) {
        finishTyping();
        return true;
    }
    if (key == juce::KeyPress::escapeKey) {
        cancelTyping();
        return true;
    }
    if (key.isKeyCode(juce::KeyPress::tabKey)) {
        const SafePointer<MyTextInputImpl> field(this);
        finishTyping();
        if (field != nullptr) {
            moveKeyboardFocusToSibling(!key.getModifiers().isShiftDown());
        }
        return true;
    }
    return stepByKey(key);
}

bool MyTextInputImpl::stepByKey(const juce::KeyPress& key) {
    if (key == juce::KeyPress::upKey || key == juce::KeyPress::downKey) {
        return step(key == juce::KeyPress::upKey ? 1 : -1);
    }
    if (key == juce::KeyPress::pageUpKey || key == juce::KeyPress::pageDownKey) {
        return step(key == juce::KeyPress::pageUpKey ? pageSteps : -pageSteps);
    }
    return false;
}

bool MyTextInputImpl::step(int steps) {
    const SafePointer<MyTextInputImpl> field(this);
    if (editable_ && typist_->getText() != textBefore_) {
        takeText(typist_->getText());
    }
    if (field == nullptr) {
        return true;
    }
    const bool stepped = takeSteps(steps);
    if (field != nullptr && stepped) {
        if (editable_) {
            textBefore_ = shownText();
            typist_->showSelected(textBefore_);
        }
        refresh();
    }
    return stepped;
}

std::unique_ptr<juce::AccessibilityHandler> MyTextInputImpl::createAccessibilityHandler() {
    juce::AccessibilityActions actions;
    actions.addAction(juce::AccessibilityActionType::press, [this] { startTyping(); });
    if (hasChevron()) {
        actions.addAction(juce::AccessibilityActionType::showMenu, [this] { openOptions(); });
    }
    return fieldAccessibility(*this, juce::AccessibilityRole::editableText, std::move(actions),
                              [this](const juce::String& text) {
                                  takeText(text);
                                  refresh();
                              });
}

}  // namespace quillo
