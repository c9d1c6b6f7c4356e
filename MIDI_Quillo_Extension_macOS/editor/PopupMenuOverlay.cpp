// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PopupMenuOverlay.hpp"

#include <algorithm>
#include <utility>

#include "editor/AlertView.hpp"
#include "editor/Fonts.hpp"
#include "editor/Icons.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/PanicKey.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

/// Room inside the panel around the rows.
constexpr int menuPadding = 4;
/// The dot at the end of the current row.
constexpr float markSize = 5;
/// How strongly the highlighted row is marked where it cannot be picked.
constexpr float disabledHighlight = 0.12F;

constexpr float tickThickness = 1.6F;

juce::Path tickIn(juce::Rectangle<float> mark) {
    const auto area = mark.withSizeKeepingCentre(9, 7);
    juce::Path path;
    path.startNewSubPath(area.getX(), area.getCentreY());
    path.lineTo(area.getX() + 3, area.getBottom());
    path.lineTo(area.getTopRight());
    return path;
}

/// Sharps are typed with the key that is on the keyboard.
juce::String searchable(const juce::String& text) {
    return text.replaceCharacter(0x266F, '#').toLowerCase();
}

/// 0: the label begins with the whole word; 1: it begins with the text; 2: it holds the text; 3: neither.
int rank(const juce::String& label, const juce::String& typed) {
    const auto text = searchable(label);
    const auto wanted = searchable(typed);
    if (!text.startsWith(wanted)) {
        return text.contains(wanted) ? 2 : 3;
    }
    return juce::CharacterFunctions::isLetterOrDigit(text[wanted.length()]) ? 1 : 0;
}

}  // namespace

PopupMenuOverlay* PopupMenuOverlay::open(juce::Component& field, juce::Rectangle<int> box,
                                         MenuContents contents, OnPick onPick) {
    auto* host = OverlayHost::find(field);
    if (host == nullptr || showsAlert(*host)) {
        return nullptr;
    }
    const auto anchor = host->overlayView().getLocalArea(&field, box);
    auto menu = std::make_unique<PopupMenuOverlay>(std::move(contents), anchor, std::move(onPick));
    menu->set<MyPrimaryColor>(environment<MyPrimaryColor>(field));
    menu->set<MySecondaryColor>(environment<MySecondaryColor>(field));
    auto* opened = menu.get();
    host->showOverlay(std::move(menu));
    return opened;
}

PopupMenuOverlay::PopupMenuOverlay(MenuContents contents, juce::Rectangle<int> anchor, OnPick onPick)
    : anchor_(anchor), onPick_(std::move(onPick)) {
    setContents(std::move(contents));
    setTitle(contents_.title);
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    list_.setModel(this);
    list_.setTitle(contents_.title);
    list_.setRowHeight(style::menuRowHeight);
    list_.setMouseMoveSelectsRows(true);
    list_.setColour(juce::ListBox::backgroundColourId, juce::Colours::transparentBlack);
    list_.getViewport()->setScrollBarThickness(style::scrollBarWidth);
    addAndMakeVisible(list_);
    search({});
}

PopupMenuOverlay::~PopupMenuOverlay() {
    list_.setModel(nullptr);
}

void PopupMenuOverlay::setContents(MenuContents contents) {
    contents_ = std::move(contents);
    widestLabel_ = 0;
    for (const auto& label : contents_.labels) {
        widestLabel_ = std::max(widestLabel_, textWidth(label, style::valueText));
    }
}

/// A row is the same as before where it says the same.
void PopupMenuOverlay::refresh(MenuContents contents) {
    const auto row = highlightedRow();
    const auto before = row ? labelOf(*row) : juce::String();
    const auto scrolled = list_.getViewport()->getViewPosition();
    list_.deselectAllRows();
    setContents(std::move(contents));
    search(typed_);
    const auto same = std::ranges::find(contents_.labels, before);
    if (same != contents_.labels.end()) {
        highlight(static_cast<std::size_t>(same - contents_.labels.begin()));
    }
    list_.getViewport()->setViewPosition(scrolled);
}

juce::Rectangle<int> PopupMenuOverlay::place(juce::Rectangle<int> anchor, juce::Point<int> wanted,
                                             juce::Rectangle<int> window) {
    const auto room = window.reduced(style::menuMargin);
    const auto below = std::max(0, room.getBottom() - anchor.getBottom());
    const auto above = std::max(0, anchor.getY() - room.getY());
    const auto width = std::min(std::max(wanted.x, anchor.getWidth()), room.getWidth());
    auto height = std::min(wanted.y, room.getHeight());
    auto y = anchor.getBottom();
    if (height > std::max(below, above)) {
        height = std::min(height, std::max({below, above, room.getHeight() / 2}));
    }
    if (height > below && above > below) {
        y = anchor.getY() - height;
    }
    return juce::Rectangle<int>(anchor.getX(), y, width, height).constrainedWithin(room);
}

std::optional<std::size_t> PopupMenuOverlay::highlightedRow() const {
    const auto row = list_.getSelectedRow();
    return row >= 0 ? std::optional(shown_[static_cast<std::size_t>(row)]) : std::nullopt;
}

juce::Rectangle<int> PopupMenuOverlay::rowArea(std::size_t row) const {
    const auto found = std::find(shown_.begin(), shown_.end(), row);
    if (found == shown_.end()) {
        return {};
    }
    const auto position = list_.getRowPosition(static_cast<int>(found - shown_.begin()), true);
    return position.translated(list_.getX(), list_.getY()).getIntersection(list_.getBounds());
}

int PopupMenuOverlay::searchHeight() const {
    return typed_.isEmpty() ? 0 : style::menuRowHeight;
}

int PopupMenuOverlay::wantedWidth() const {
    const auto mark = style::chevronSize + style::chevronGap;
    const auto typed = typedChoice_ ? textWidth(typedChoice_->label, style::valueText) : 0;
    return std::max(widestLabel_, typed) + mark + 2 * style::fieldPadding + style::scrollBarWidth +
           2 * menuPadding;
}

int PopupMenuOverlay::heightFor(std::size_t rows) const {
    return static_cast<int>(rows) * style::menuRowHeight + searchHeight() + 2 * menuPadding;
}

juce::Rectangle<int> PopupMenuOverlay::panelForShownRows() const {
    auto full = place(anchor_, {wantedWidth(), heightFor(contents_.labels.size())}, getLocalBounds());
    const auto rowsThatFit = static_cast<std::size_t>(
        std::max(0, full.getHeight() - searchHeight() - 2 * menuPadding) / style::menuRowHeight);
    const auto height = std::min(heightFor(std::min(rowsThatFit, shown_.size())), full.getHeight());
    return full.getBottom() <= anchor_.getY() ? full.removeFromBottom(height) : full.removeFromTop(height);
}

void PopupMenuOverlay::resized() {
    const auto row = highlightedRow();
    panel_ = panelForShownRows();
    list_.setBounds(panel_.reduced(menuPadding).withTrimmedTop(searchHeight()));
    highlight(row);
}

void PopupMenuOverlay::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto panel = panel_.toFloat();
    juce::DropShadow(juce::Colours::black.withAlpha(0.6F), 12, {0, 3}).drawForRectangle(graphics, panel_);
    graphics.setColour(displayColour(style::lifted(palette.background, style::menuLift)));
    graphics.fillRoundedRectangle(panel, style::buttonCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(panel.reduced(0.5F), style::buttonCorner, 1);
    if (typed_.isNotEmpty()) {
        graphics.setColour(displayColour(shown_.empty() ? palette.secondaryText : palette.primaryText));
        graphics.setFont(textFont(style::valueText));
        const auto line =
            panel_.reduced(menuPadding).removeFromTop(searchHeight()).reduced(style::fieldPadding, 0);
        graphics.drawText(shown_.empty() ? "No match: " + typed_ : "Search: " + typed_, line,
                          juce::Justification::centredLeft, true);
    }
}

void PopupMenuOverlay::mouseDown(const juce::MouseEvent& event) {
    if (!panel_.contains(event.getPosition())) {
        close();
    }
}

bool PopupMenuOverlay::keyPressed(const juce::KeyPress& key) {
    if (isPanicKey(key)) {
        return false;
    }
    const auto character = key.getTextCharacter();
    if (key == juce::KeyPress::escapeKey || key.isKeyCode(juce::KeyPress::tabKey)) {
        close();
    } else if (key == juce::KeyPress::backspaceKey) {
        search(typed_.dropLastCharacters(1));
    } else if (key == juce::KeyPress::spaceKey && typed_.isEmpty()) {
        pick(list_.getSelectedRow());
    } else if (character >= ' ' && !key.getModifiers().isCommandDown()) {
        search(typed_ + juce::String::charToString(character));
    }
    return true;
}

void PopupMenuOverlay::focusGained(FocusChangeType /*cause*/) {
    list_.grabKeyboardFocus();
}

std::unique_ptr<juce::AccessibilityHandler> PopupMenuOverlay::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::popupMenu);
}

int PopupMenuOverlay::getNumRows() {
    return static_cast<int>(shown_.size());
}

const juce::String& PopupMenuOverlay::labelOf(std::size_t row) const {
    return row == typedRow() ? typedChoice_->label : contents_.labels[row];
}

const juce::String& PopupMenuOverlay::label(int row) const {
    return labelOf(shown_[static_cast<std::size_t>(row)]);
}

bool PopupMenuOverlay::isTicked(int row) const {
    return contents_.ticked.contains(shown_[static_cast<std::size_t>(row)]);
}

bool PopupMenuOverlay::canPick(int row) const {
    return row >= 0 && row < static_cast<int>(shown_.size()) &&
           !contents_.disabled.contains(shown_[static_cast<std::size_t>(row)]);
}

void PopupMenuOverlay::paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                                        bool highlighted) {
    if (row >= getNumRows()) {
        return;
    }
    const bool enabled = canPick(row);
    auto colour = displayColour(environment<MyPrimaryColor>(*this))
                      .withMultipliedAlpha(enabled ? 1.0F : style::disabledAlpha);
    auto area = juce::Rectangle<int>(width, height);
    graphics.setColour(colour);
    if (highlighted) {
        graphics.setOpacity(enabled ? 1.0F : disabledHighlight);
        graphics.fillRoundedRectangle(area.toFloat(), style::fieldCorner);
        colour = enabled ? displayColour(environment<PaletteKey>(*this).background) : colour;
        graphics.setColour(colour);
    }
    area.reduce(style::fieldPadding, 0);
    const auto mark = area.removeFromRight(style::chevronSize).toFloat();
    if (shown_[static_cast<std::size_t>(row)] == contents_.current) {
        graphics.fillEllipse(mark.withSizeKeepingCentre(markSize, markSize));
    } else if (isTicked(row)) {
        graphics.strokePath(tickIn(mark), juce::PathStrokeType(tickThickness));
    }
    drawLine(graphics, label(row), area, style::valueText, colour);
}

void PopupMenuOverlay::listBoxItemClicked(int row, const juce::MouseEvent& /*event*/) {
    pick(row);
}

void PopupMenuOverlay::returnKeyPressed(int row) {
    pick(row);
}

void PopupMenuOverlay::deleteKeyPressed(int /*row*/) {
    search(typed_.dropLastCharacters(1));
}

juce::String PopupMenuOverlay::getNameForRow(int row) {
    return isTicked(row) ? label(row) + ", ticked" : label(row);
}

juce::String PopupMenuOverlay::getTooltipForRow(int row) {
    return textWidth(label(row), style::valueText) > list_.getVisibleContentWidth() ? label(row)
                                                                                    : juce::String();
}

void PopupMenuOverlay::search(const juce::String& typed) {
    const auto before = highlightedRow().has_value() ? highlightedRow() : contents_.current;
    typed_ = typed;
    typedChoice_ = contents_.typed && typed_.isNotEmpty() ? contents_.typed(typed_) : std::nullopt;
    shown_.clear();
    if (typedChoice_) {
        shown_.push_back(typedRow());
    }
    for (std::size_t row = 0; row < contents_.labels.size(); ++row) {
        if (rank(contents_.labels[row], typed_) < 3) {
            shown_.push_back(row);
        }
    }
    list_.updateContent();
    resized();
    highlight(typed_.isEmpty() ? before : bestMatch());
    repaint();
}

std::optional<std::size_t> PopupMenuOverlay::bestMatch() const {
    if (typedChoice_) {
        return typedRow();
    }
    const auto better = [this](std::size_t left, std::size_t right) {
        return rank(contents_.labels[left], typed_) < rank(contents_.labels[right], typed_);
    };
    const auto best = std::min_element(shown_.begin(), shown_.end(), better);
    return best != shown_.end() ? std::optional(*best) : std::nullopt;
}

void PopupMenuOverlay::highlight(std::optional<std::size_t> row) {
    auto found = row ? std::find(shown_.begin(), shown_.end(), *row) : shown_.end();
    if (!row) {
        found =
            std::ranges::find_if(shown_, [this](auto shown) { return !contents_.disabled.contains(shown); });
    }
    if (shown_.empty()) {
        list_.deselectAllRows();
        return;
    }
    const auto position = found != shown_.end() ? static_cast<int>(found - shown_.begin()) : 0;
    const auto rowsInSight = std::max(1, list_.getHeight() / style::menuRowHeight);
    list_.selectRow(position, true);
    list_.getViewport()->setViewPosition(0, std::max(0, position - rowsInSight / 2) * style::menuRowHeight);
}

void PopupMenuOverlay::pick(int row) {
    if (!canPick(row)) {
        return;
    }
    const auto picked = shown_[static_cast<std::size_t>(row)];
    if (contents_.staysOpen) {
        const auto onPick = onPick_;
        onPick(picked);
        return;
    }
    const auto act = picked == typedRow()
                         ? std::move(typedChoice_->pick)
                         : std::function<void()>([onPick = std::move(onPick_), picked] { onPick(picked); });
    close();
    act();
}

void PopupMenuOverlay::close() {
    if (auto* host = OverlayHost::find(*this)) {
        host->closeOverlay();
    }
}

}  // namespace quillo
