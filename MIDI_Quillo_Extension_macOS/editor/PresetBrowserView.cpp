// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PresetBrowserView.hpp"

#include <algorithm>
#include <utility>

#include "editor/FieldPlan.hpp"
#include "editor/Fonts.hpp"
#include "editor/Icons.hpp"
#include "editor/PanicKey.hpp"
#include "editor/Style.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr int browserMargin = 8;
constexpr int browserGap = 6;
constexpr int browserLineHeight = 16;
/// In a list that is narrower than this there is no room for dates and sentences.
constexpr int narrowList = 300;

juce::String title(PresetBrowser::Mode mode) {
    return mode == PresetBrowser::Mode::open ? "Import a preset" : "Export the preset";
}

juce::String prompt(PresetBrowser::Mode mode) {
    return mode == PresetBrowser::Mode::open ? "Name, part of a name, or path" : "Name or path";
}

juce::String dateText(std::chrono::system_clock::time_point time) {
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    return juce::Time(since.count()).formatted("%Y-%m-%d %H:%M");
}

/// The end of a path, which identifies it best, as far as it fits.
juce::String endThatFits(juce::String path, int width) {
    if (textWidth(path, style::valueText) <= width) {
        return path;
    }
    const auto ellipsis = juce::String::charToString(0x2026);
    while (path.isNotEmpty() && textWidth(ellipsis + path, style::valueText) > width) {
        path = path.substring(1);
    }
    return ellipsis + path;
}

bool isPlain(const juce::KeyPress& key, int code) {
    return key == juce::KeyPress(code);
}

}  // namespace

PresetBrowserView::PresetBrowserView(PresetBrowser browser, OnChosen onChosen, std::function<void()> onCancel)
    : browser_(std::move(browser)),
      onChosen_(std::move(onChosen)),
      onCancel_(std::move(onCancel)),
      leave_("The folder around this one", IconName::arrowUp, [this] { leave(); }),
      cancel_("Cancel", [this] { cancel(); }),
      confirm_(juceText(browser_.action()), [this] { confirmOrReplace(); }) {
    setTitle(title(browser_.mode()));
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    for (const auto& place : browser_.places()) {
        places_.push_back(std::make_unique<MyTextButton>(juceText(place.name),
                                                         [this, folder = place.folder] { enter(folder); }));
        places_.back()->setTooltip(juceText(escaped(place.folder.string())));
        addAndMakeVisible(*places_.back());
    }
    list_.setModel(this);
    list_.setTitle("Presets");
    list_.setRowHeight(style::menuRowHeight);
    list_.setColour(juce::ListBox::backgroundColourId, juce::Colours::transparentBlack);
    list_.getViewport()->setScrollBarThickness(style::scrollBarWidth);
    list_.addKeyListener(this);
    name_.setTitle("Name");
    name_.addKeyListener(this);
    name_.onTextChange = [this] {
        takeName();
        refresh();
    };
    confirm_.setAccented(true);
    for (auto* part : std::initializer_list<juce::Component*>{&leave_, &list_, &name_, &cancel_, &confirm_}) {
        addAndMakeVisible(*part);
    }
    refresh();
}

PresetBrowserView::~PresetBrowserView() {
    list_.setModel(nullptr);
}

void PresetBrowserView::dressName() {
    const auto palette = environment<PaletteKey>(*this);
    const auto text = displayColour(palette.primaryText);
    name_.setFont(textFont(style::valueText));
    name_.applyFontToAllText(name_.getFont());
    name_.applyColourToAllText(text);
    name_.setJustification(juce::Justification::centredLeft);
    name_.setIndents(style::fieldPadding, 0);
    name_.setColour(juce::TextEditor::textColourId, text);
    name_.setColour(juce::TextEditor::backgroundColourId,
                    displayColour(style::lifted(palette.background, style::boxLift)));
    name_.setColour(juce::TextEditor::outlineColourId, displayColour(style::edge(palette)));
    name_.setColour(juce::TextEditor::focusedOutlineColourId, displayColour(palette.delayInput));
    name_.setColour(juce::CaretComponent::caretColourId, text);
}

void PresetBrowserView::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyBackground>(palette.background);
    set<MyPrimaryColor>(palette.delayInput);
    set<MySecondaryColor>(palette.delayInputSecondaryColor);
    dressName();
}

void PresetBrowserView::refresh() {
    list_.updateContent();
    if (const auto picked = browser_.picked()) {
        list_.selectRow(static_cast<int>(*picked));
    } else {
        list_.deselectAllRows();
    }
    if (const auto name = juceText(browser_.name()); name != name_.getText()) {
        name_.setText(name, false);
    }
    confirm_.setButtonText(juceText(browser_.action()));
    resized();
    repaint();
}

/// JUCE reports a changed text a moment later, and a quick Return is earlier.
void PresetBrowserView::takeName() {
    if (const auto name = name_.getText(); name != juceText(browser_.name())) {
        browser_.type(name.toStdString());
    }
}

void PresetBrowserView::folderChanged() {
    refresh();
    list_.getViewport()->setViewPosition(0, 0);
    if (browser_.picked()) {
        list_.scrollToEnsureRowIsOnscreen(static_cast<int>(*browser_.picked()));
    }
    name_.grabKeyboardFocus();
}

void PresetBrowserView::enter(const std::filesystem::path& folder) {
    takeName();
    browser_.enter(folder);
    folderChanged();
}

void PresetBrowserView::leave() {
    takeName();
    browser_.leave();
    folderChanged();
}

void PresetBrowserView::confirm() {
    takeName();
    const auto folder = browser_.folder();
    if (const auto file = browser_.confirm()) {
        choose(*file, Existing::keep);
    } else if (browser_.folder() != folder) {
        folderChanged();
    } else {
        refresh();
    }
}

void PresetBrowserView::confirmOrReplace() {
    takeName();
    if (const auto file = browser_.replace()) {
        choose(*file, Existing::replace);
    } else {
        confirm();
    }
}

void PresetBrowserView::choose(const std::filesystem::path& file, Existing existing) {
    const auto onChosen = onChosen_;
    onChosen(file, existing);
}

void PresetBrowserView::cancel() {
    const auto onCancel = onCancel_;
    onCancel();
}

/// Keys of the field and of the list, before these see them.
bool PresetBrowserView::keyPressed(const juce::KeyPress& key, juce::Component* origin) {
    if (isPlain(key, juce::KeyPress::returnKey)) {
        confirm();
    } else if (isPlain(key, juce::KeyPress::escapeKey)) {
        cancel();
    } else if (key == juce::KeyPress(juce::KeyPress::upKey, juce::ModifierKeys::altModifier, 0)) {
        leave();
    } else if (origin == &list_ && isPlain(key, juce::KeyPress::backspaceKey)) {
        leave();
    } else {
        return stepBy(key) || (origin == &list_ && typeFromList(key));
    }
    return true;
}

bool PresetBrowserView::stepBy(const juce::KeyPress& key) {
    const auto page = std::max(1, list_.getHeight() / style::menuRowHeight - 1);
    const std::pair<int, int> steps[] = {{juce::KeyPress::upKey, -1},
                                         {juce::KeyPress::downKey, 1},
                                         {juce::KeyPress::pageUpKey, -page},
                                         {juce::KeyPress::pageDownKey, page}};
    const auto* step =
        std::ranges::find_if(steps, [&key](const auto& pair) { return isPlain(key, pair.first); });
    if (step == std::end(steps)) {
        return false;
    }
    takeName();
    browser_.step(step->second);
    refresh();
    return true;
}

/// What is typed while the list has the keyboard begins another name.
bool PresetBrowserView::typeFromList(const juce::KeyPress& key) {
    if (key.getTextCharacter() <= ' ' || key.getModifiers().isCommandDown()) {
        return false;
    }
    name_.grabKeyboardFocus();
    name_.selectAll();
    name_.insertTextAtCaret(juce::String::charToString(key.getTextCharacter()));
    return true;
}

bool PresetBrowserView::keyPressed(const juce::KeyPress& key) {
    if (isPlain(key, juce::KeyPress::escapeKey)) {
        cancel();
    } else if (key.isKeyCode(juce::KeyPress::tabKey) || isPanicKey(key)) {
        return false;
    } else if (key == juce::KeyPress(juce::KeyPress::upKey, juce::ModifierKeys::altModifier, 0)) {
        leave();
    }
    return true;
}

/// A click beside the parts leaves the keyboard in the field.
void PresetBrowserView::mouseUp(const juce::MouseEvent& /*event*/) {
    name_.grabKeyboardFocus();
}

void PresetBrowserView::focusGained(FocusChangeType /*cause*/) {
    name_.grabKeyboardFocus();
    name_.selectAll();
}

void PresetBrowserView::focusOfChildComponentChanged(FocusChangeType /*cause*/) {
    repaint();
}

std::unique_ptr<juce::AccessibilityHandler> PresetBrowserView::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::dialogWindow);
}

int PresetBrowserView::getNumRows() {
    return static_cast<int>(browser_.entries().size());
}

/// JUCE may still ask for a row of the list before the last change.
bool PresetBrowserView::isRow(int row) {
    return row >= 0 && row < getNumRows();
}

/// What a screen reader says, and the tooltip shows.
juce::String PresetBrowserView::getNameForRow(int row) {
    if (!isRow(row)) {
        return {};
    }
    const auto& entry = browser_.entries()[static_cast<std::size_t>(row)];
    return juceText(entry.sentence.empty() ? entry.name : entry.name + ", " + entry.sentence);
}

juce::String PresetBrowserView::getTooltipForRow(int row) {
    return getNameForRow(row);
}

void PresetBrowserView::selectedRowsChanged(int lastRow) {
    if (lastRow >= 0 && browser_.picked() != static_cast<std::size_t>(lastRow)) {
        browser_.pick(static_cast<std::size_t>(lastRow));
        refresh();
    }
}

void PresetBrowserView::listBoxItemDoubleClicked(int row, const juce::MouseEvent& /*event*/) {
    if (isRow(row)) {
        browser_.pick(static_cast<std::size_t>(row));
        confirm();
    }
}

void PresetBrowserView::paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                                         bool selected) {
    if (!isRow(row)) {
        return;
    }
    const auto palette = environment<PaletteKey>(*this);
    const auto& entry = browser_.entries()[static_cast<std::size_t>(row)];
    auto area = juce::Rectangle<int>(width, height);
    if (selected) {
        graphics.setColour(displayColour(palette.delayInput));
        graphics.fillRoundedRectangle(area.toFloat(), style::fieldCorner);
    }
    const auto text = displayColour(selected ? palette.background : palette.primaryText);
    const auto faint = displayColour(selected ? palette.background : palette.secondaryText);
    area.reduce(style::fieldPadding, 0);
    drawIcon(graphics, entry.isFolder ? IconName::folder : IconName::preset,
             area.removeFromLeft(style::iconSize).toFloat().withSizeKeepingCentre(14, 14), faint);
    area.removeFromLeft(browserGap);
    if (!entry.sentence.empty() && width >= narrowList) {
        drawLine(graphics, juceText(entry.sentence), area.removeFromRight(area.getWidth() * 3 / 5),
                 style::valueText, faint);
        area.removeFromRight(browserGap);
    } else if (!entry.isFolder && width >= narrowList) {
        const auto date = dateText(entry.changed);
        drawLine(graphics, date, area.removeFromRight(textWidth(date, style::valueText)), style::valueText,
                 faint);
        area.removeFromRight(browserGap);
    }
    drawLine(graphics, juceText(entry.name), area, style::valueText, text);
}

int PresetBrowserView::widthOfTop() const {
    int width = textWidth(title(browser_.mode()), style::titleText, true);
    for (const auto& place : places_) {
        width += browserGap + place->preferredWidth();
    }
    return width;
}

/// The title has a line of its own where it has no room beside the places.
void PresetBrowserView::layOutTop(juce::Rectangle<int>& area) {
    const bool beside = widthOfTop() <= area.getWidth();
    if (!beside) {
        titleArea_ = area.removeFromTop(browserLineHeight);
    }
    auto places = area.removeFromTop(style::buttonHeight);
    for (auto place = places_.rbegin(); place != places_.rend(); ++place) {
        const auto share = places.getWidth() / static_cast<int>(places_.rend() - place);
        (*place)->setBounds(places.removeFromRight(std::min((*place)->preferredWidth(), share)));
        places.removeFromRight(std::min(browserGap, places.getWidth()));
    }
    if (beside) {
        titleArea_ = places;
    }
    folderArea_ = area.removeFromTop(style::menuRowHeight);
    leave_.setBounds(folderArea_.removeFromLeft(style::menuRowHeight));
    folderArea_.removeFromLeft(browserGap);
}

void PresetBrowserView::layOutBottom(juce::Rectangle<int>& area) {
    const auto buttons = confirm_.preferredWidth() + browserGap + cancel_.preferredWidth();
    auto lowest = area.removeFromBottom(style::boxHeight);
    if (lowest.getWidth() - buttons < buttons) {
        area.removeFromBottom(browserGap);
        name_.setBounds(area.removeFromBottom(style::boxHeight));
    } else {
        name_.setBounds(lowest.withTrimmedRight(buttons + browserGap));
    }
    const auto place = [&lowest](MyTextButton& button) {
        button.setBounds(lowest.removeFromRight(button.preferredWidth())
                             .withSizeKeepingCentre(button.preferredWidth(), style::buttonHeight));
        lowest.removeFromRight(browserGap);
    };
    place(confirm_);
    place(cancel_);
    area.removeFromBottom(browserGap);
    const auto message = juceText(browser_.message());
    const auto lines =
        std::min(3, textWidth(message, style::valueText) / std::max(1, area.getWidth() - browserGap) + 1);
    messageArea_ =
        message.isEmpty() ? juce::Rectangle<int>() : area.removeFromBottom(lines * browserLineHeight);
    area.removeFromBottom(message.isEmpty() ? 0 : browserGap);
}

void PresetBrowserView::resized() {
    auto area = getLocalBounds().reduced(browserMargin);
    layOutTop(area);
    layOutBottom(area);
    list_.setBounds(area.reduced(1));
}

void PresetBrowserView::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    graphics.fillAll(displayColour(palette.background));
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, true));
    graphics.drawText(title(browser_.mode()), titleArea_, juce::Justification::centredLeft, true);
    const auto folder = juceText(escaped(browser_.folder().string()));
    drawLine(graphics, endThatFits(folder, folderArea_.getWidth()), folderArea_, style::valueText,
             displayColour(palette.secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.setColour(displayColour(palette.primaryText));
    graphics.drawFittedText(juceText(browser_.message()), messageArea_, juce::Justification::centredLeft, 3,
                            1);
    if (browser_.entries().empty()) {
        graphics.setColour(displayColour(palette.secondaryText));
        graphics.drawText("No presets here", list_.getBounds(), juce::Justification::centred, true);
    }
}

/// The frame around the list, which is a ring while the list has the keyboard; and what the empty field is
/// for.
void PresetBrowserView::paintOverChildren(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const bool focused = list_.hasKeyboardFocus(true);
    graphics.setColour(displayColour(focused ? palette.delayInput : style::edge(palette)));
    graphics.drawRoundedRectangle(list_.getBounds().expanded(1).toFloat().reduced(0.5F), style::fieldCorner,
                                  focused ? style::focusRing : 1.0F);
    if (name_.isEmpty()) {
        drawLine(graphics, prompt(browser_.mode()), name_.getBounds().reduced(style::fieldPadding + 2, 0),
                 style::valueText, displayColour(palette.secondaryText));
    }
}

}  // namespace quillo
