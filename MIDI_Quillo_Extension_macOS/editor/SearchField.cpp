// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SearchField.hpp"

#include <utility>

#include "editor/EditorText.hpp"
#include "editor/Environment.hpp"
#include "editor/FocusRing.hpp"
#include "editor/Fonts.hpp"
#include "editor/Icons.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int iconRoom = 28;
constexpr int findsGap = 6;

}  // namespace

class SearchField::Typist final : public EditorText {
public:
    explicit Typist(SearchField& field) : field_(field) {
        setTitle("Search rules");
        setFont(textFont(style::valueText));
        setBorder({});
        setIndents(0, 0);
        setJustification(juce::Justification::centredLeft);
        for (const auto colour : {backgroundColourId, outlineColourId, focusedOutlineColourId}) {
            setColour(colour, juce::Colours::transparentBlack);
        }
        const Palette palette;
        setColour(textColourId, displayColour(palette.primaryText));
        setColour(juce::CaretComponent::caretColourId, displayColour(palette.primaryText));
        setTextToShowWhenEmpty("Search rules", displayColour(palette.secondaryText));
        onTextChange = [this] { field_.typed(); };
    }

    /// Keys that mean nothing to a text go on to the editor.
    bool keyPressed(const juce::KeyPress& key) override {
        if (key.isKeyCode(juce::KeyPress::returnKey)) {
            field_.actions_.onNext(!key.getModifiers().isShiftDown());
        } else if (key == juce::KeyPress(juce::KeyPress::escapeKey)) {
            field_.actions_.onEnd();
        } else if (key == juce::KeyPress(juce::KeyPress::downKey)) {
            field_.actions_.onGoThere();
        } else {
            const bool used = EditorText::keyPressed(key);
            field_.typed();
            return used;
        }
        return true;
    }

    void focusGained(FocusChangeType cause) override {
        EditorText::focusGained(cause);
        field_.repaint();
        if (cause != focusChangedDirectly) {
            field_.actions_.onEnter();
        }
    }

    void focusLost(FocusChangeType cause) override {
        EditorText::focusLost(cause);
        field_.repaint();
    }

private:
    SearchField& field_;
};

SearchField::SearchField(SearchActions actions)
    : actions_(std::move(actions)),
      typist_(std::make_unique<Typist>(*this)),
      end_("End the search", IconName::clear, [this] { actions_.onEnd(); }) {
    addAndMakeVisible(*typist_);
    addChildComponent(end_);
}

SearchField::~SearchField() = default;

juce::TextEditor& SearchField::text() {
    return *typist_;
}

void SearchField::begin() {
    typist_->grabKeyboardFocus();
    typist_->selectAll();
}

void SearchField::begin(const juce::String& text) {
    typist_->grabKeyboardFocus();
    typist_->setText(text, false);
    typist_->moveCaretToEnd();
    typed();
}

/// JUCE tells of a change of the text only after a while: of a key it is known at once.
void SearchField::typed() {
    const auto text = typist_->getText();
    if (std::exchange(sought_, text) != text) {
        resized();
        actions_.onType(text);
    }
}

void SearchField::setClosable(bool closable) {
    closable_ = closable;
    resized();
}

void SearchField::clear() {
    typist_->setText({}, false);
    sought_.clear();
    showFinds({});
    resized();
}

void SearchField::showFinds(const juce::String& words) {
    if (std::exchange(finds_, words) != words) {
        typist_->setHelpText(words);
        resized();
        repaint();
    }
}

void SearchField::letGoElsewhere(const juce::Component* except) {
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    auto* field = focused != nullptr ? focused->findParentComponentOfClass<SearchField>() : nullptr;
    if (field != nullptr && field != except && !field->isParentOf(except)) {
        unfocusAllComponents();
    }
}

void SearchField::resized() {
    auto area = getLocalBounds();
    area.removeFromLeft(iconRoom);
    end_.setVisible(closable_ || !typist_->isEmpty());
    end_.setBounds(area.removeFromRight(end_.isVisible() ? iconRoom : style::fieldPadding).reduced(3));
    area.removeFromRight(finds_.isEmpty() ? 0 : textWidth(finds_, style::captionText) + findsGap);
    typist_->setBounds(area);
}

void SearchField::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto box = getLocalBounds().toFloat().reduced(0.5F);
    graphics.setColour(displayColour(style::lifted(palette.background, style::boxLift)));
    graphics.fillRoundedRectangle(box, style::buttonCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(box, style::buttonCorner, 1);
    const auto grey = displayColour(palette.secondaryText);
    drawIcon(graphics, IconName::search, getLocalBounds().removeFromLeft(iconRoom).reduced(7).toFloat(),
             grey);
    graphics.setColour(grey);
    graphics.setFont(textFont(style::captionText));
    graphics.drawText(finds_, getLocalBounds().withRight(end_.getX()), juce::Justification::centredRight,
                      false);
    if (hasKeyboardFocus(true)) {
        drawFocusRing(graphics, getLocalBounds(), style::buttonCorner, displayColour(palette.primaryText));
    }
}

}  // namespace quillo
