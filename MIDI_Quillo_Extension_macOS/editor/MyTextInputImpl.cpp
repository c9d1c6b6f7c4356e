// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextInputImpl.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/EditorText.hpp"
#include "editor/Environment.hpp"
#include "editor/FieldAccessibility.hpp"
#include "editor/Fonts.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

constexpr int pageSteps = 10;
/// How far a wheel without notches turns for one step.
constexpr float turnOfStep = 0.1F;
/// What is typed begins this far in, and so in the place of the value that it replaces.
constexpr int caretRoom = 1;
/// The prompt stands behind the caret.
constexpr int promptGap = 2;
constexpr const char* decimalDigits = "0123456789";
/// Of ranges and distances, as they are typed and as they are shown.
constexpr const char* signs = "+-−–";
constexpr const char* hexadecimalDigits = "0123456789ABCDEFabcdef";

/// By how much a key steps a number; 0 for every other key.
int stepsOf(const juce::KeyPress& key) {
    if (key == juce::KeyPress::upKey || key == juce::KeyPress::downKey) {
        return key == juce::KeyPress::upKey ? 1 : -1;
    }
    if (key == juce::KeyPress::pageUpKey || key == juce::KeyPress::pageDownKey) {
        return key == juce::KeyPress::pageUpKey ? pageSteps : -pageSteps;
    }
    return 0;
}

/// The character that a key types, or 0. Some systems report one for the delete key, too.
juce::juce_wchar characterOf(const juce::KeyPress& key) {
    constexpr juce::juce_wchar deleteCharacter = 0x7F;
    const auto character = key.getTextCharacter();
    const bool types =
        character >= ' ' && character != deleteCharacter && !key.getModifiers().isCommandDown();
    return types ? character : 0;
}

}  // namespace

/// What is typed into. It is kept, hidden, once it was made, because keys end typing in the middle of its own
/// functions.
class MyTextInputImpl::Typist final : public EditorText {
public:
    explicit Typist(MyTextInputImpl& field) : field_(field) {
        setBorder({});
        setIndents(0, 0);
        setJustification(juce::Justification::centredLeft);
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
        return !isShortcut(key) && !field_.isUnneeded(key) &&
               (field_.takeKey(key) || EditorText::keyPressed(key));
    }

    void focusLost(FocusChangeType cause) override {
        EditorText::focusLost(cause);
        field_.finishTyping();
    }

    /// The prompt in the place of a text that was taken away: JUCE's own is not drawn while it is typed into.
    void paintOverChildren(juce::Graphics& graphics) override {
        if (isEmpty()) {
            field_.paintPrompt(graphics, getLocalBounds().withTrimmedLeft(caretRoom + promptGap));
        }
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
    return std::max(FieldView::preferredWidth(caption(), shownText(), hasChevron()),
                    FieldView::preferredWidth({}, prompt_, hasChevron()));
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
    if (editable_ && holdsNothing(typist_->getText())) {
        cancelTyping();
    } else {
        confirmTyping();
    }
}

void MyTextInputImpl::confirmTyping() {
    if (!editable_) {
        return;
    }
    const auto text = typist_->getText();
    const SafePointer<MyTextInputImpl> field(this);
    stopTyping();
    if (text != textBefore_) {
        take(text);
    }
    if (field != nullptr) {
        refresh();
    }
}

/// What the text means beyond values comes first: with a sign it is no value of several rules.
void MyTextInputImpl::take(const juce::String& text) {
    const auto typed = extras().typed ? extras().typed(text) : std::nullopt;
    if (typed) {
        typed->pick();
    } else if (!extras().isOfSeveral || !text.containsAnyOf(juce::String::fromUTF8(signs))) {
        takeText(text);
    }
}

void MyTextInputImpl::cancelTyping() {
    if (editable_) {
        stopTyping();
    }
}

void MyTextInputImpl::finishTypingElsewhere(const juce::Component* except) {
    const SafePointer field(typedInto());
    if (field == nullptr || field == except || field->isParentOf(except)) {
        return;
    }
    field->finishTyping();
    if (field != nullptr) {
        field->letGo();
    }
}

MyTextInputImpl* MyTextInputImpl::typedInto() {
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    auto* field = focused != nullptr ? focused->findParentComponentOfClass<MyTextInputImpl>() : nullptr;
    return field != nullptr && field->editable_ ? field : nullptr;
}

juce::Component* MyTextInputImpl::around(juce::Component* focused) {
    auto* field = focused != nullptr ? focused->findParentComponentOfClass<MyTextInputImpl>() : nullptr;
    return field != nullptr ? field : focused;
}

/// What taking the text may have opened keeps the keyboard.
void MyTextInputImpl::letGo() {
    if (hasKeyboardFocus(true)) {
        juce::Component::unfocusAllComponents();
    }
}

void MyTextInputImpl::goOn(bool forward) {
    if (!hasKeyboardFocus(true)) {
        return;
    }
    moveKeyboardFocusToSibling(forward);
    auto* next = dynamic_cast<MyTextInputImpl*>(juce::Component::getCurrentlyFocusedComponent());
    if (next != nullptr && next != this) {
        next->startTyping();
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
        paintPrompt(graphics, textArea());
    } else {
        FieldView::paintValue(graphics);
    }
}

void MyTextInputImpl::paintPrompt(juce::Graphics& graphics, juce::Rectangle<int> area) {
    drawLine(graphics, prompt_, area, style::valueText,
             displayColour(environment<PaletteKey>(*this).secondaryText));
}

int MyTextInputImpl::clicksOf(const juce::MouseEvent& event) const {
    return std::max(event.getNumberOfClicks(), environment<MyClickOverlayClicks>(*this));
}

/// Once the text is taken, the chevron may be elsewhere.
void MyTextInputImpl::mouseDown(const juce::MouseEvent& event) {
    onChevron_ = chevronArea().contains(event.getPosition());
}

void MyTextInputImpl::mouseUp(const juce::MouseEvent& event) {
    if (!event.mouseWasClicked() || event.mods.isPopupMenu() || !isEnabled()) {
        return;
    }
    if (onChevron_) {
        openOptions();
    } else if (typingArea().contains(event.getPosition()) && clicksOf(event) >= clicks_) {
        startTyping();
    }
}

/// Once the text is taken, there may be nothing to choose from.
void MyTextInputImpl::openOptions() {
    finishTypingElsewhere();
    if (!hasChevron()) {
        return;
    }
    openMenu(optionLabels(), currentOption(), [this](std::size_t option) { pickOption(option); });
}

void MyTextInputImpl::mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) {
    if (wheel.deltaY == 0 || !isEnabled() || !(editable_ || event.mods.isCtrlDown())) {
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

bool MyTextInputImpl::opensOptions(const juce::KeyPress& key) const {
    return hasChevron() && key == juce::KeyPress(juce::KeyPress::downKey, juce::ModifierKeys::altModifier, 0);
}

bool MyTextInputImpl::beginsTyping(const juce::KeyPress& key) const {
    const auto character = characterOf(key);
    return typed() == Typed::number && character != 0 && juce::String(decimalDigits).containsChar(character);
}

bool MyTextInputImpl::keyPressed(const juce::KeyPress& key) {
    const bool opens = key == juce::KeyPress::returnKey || key == juce::KeyPress::F2Key;
    const bool steps = stepsOf(key) != 0 && shownInstead().isEmpty() && takeSteps(0);
    if (!isEnabled() || editable_ || !(opens || steps || opensOptions(key) || beginsTyping(key))) {
        return false;
    }
    if (MyDragAndDropForEach::bringIntoSight(*this)) {
        return true;
    }
    if (opensOptions(key)) {
        openOptions();
    } else if (steps) {
        step(stepsOf(key));
    } else {
        startTyping();
        if (beginsTyping(key)) {
            typist_->insertTextAtCaret(juce::String::charToString(characterOf(key)));
        }
    }
    return true;
}

bool MyTextInputImpl::isUnneeded(const juce::KeyPress& key) const {
    const auto character = characterOf(key);
    if (character == 0) {
        return false;
    }
    if (character == ' ' && typist_->getHighlightedRegion().getStart() == 0) {
        return true;
    }
    const auto digits = typed() == Typed::number ? juce::String(decimalDigits) + (extras().typed ? "+-" : "")
                                                 : juce::String(hexadecimalDigits);
    const bool isBlankBetweenBytes = typed() == Typed::bytes && character == ' ';
    return typed() != Typed::text && !digits.containsChar(character) && !isBlankBetweenBytes;
}

bool MyTextInputImpl::holdsNothing(const juce::String& text) const {
    switch (typed()) {
    case Typed::number: return !text.containsAnyOf(decimalDigits);
    case Typed::bytes: return !text.containsAnyOf(hexadecimalDigits);
    case Typed::text: break;
    }
    return text.trim().isEmpty();
}

/// A key while the field is typed into; true when the text has no more to do with it.
bool MyTextInputImpl::takeKey(const juce::KeyPress& key) {
    const SafePointer<MyTextInputImpl> field(this);
    const bool isTab = key.isKeyCode(juce::KeyPress::tabKey);
    if (MyDragAndDropForEach::bringIntoSight(*this)) {
        return true;
    }
    if (key == juce::KeyPress::escapeKey) {
        cancelTyping();
    } else if (opensOptions(key)) {
        finishTyping();
        if (field != nullptr) {
            openOptions();
        }
    } else if (isTab || key == juce::KeyPress::returnKey) {
        confirmTyping();
        if (field != nullptr) {
            isTab ? goOn(!key.getModifiers().isShiftDown()) : letGo();
        }
    } else {
        return stepsOf(key) != 0 && step(stepsOf(key));
    }
    return true;
}

bool MyTextInputImpl::step(int steps) {
    if (typed() != Typed::number || shownInstead().isNotEmpty()) {
        return false;
    }
    const SafePointer<MyTextInputImpl> field(this);
    if (editable_ && typist_->getText() != textBefore_ && !holdsNothing(typist_->getText())) {
        const auto text = typist_->getText();
        take(text);
        if (field != nullptr && shownText() == textBefore_ && !isValue(text)) {
            stopTyping();
            refresh();
            return true;
        }
    }
    if (field == nullptr) {
        return true;
    }
    const bool stepped = shownInstead().isNotEmpty() || takeSteps(steps);
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
                                  take(text);
                                  refresh();
                              });
}

}  // namespace quillo
