// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Header.hpp"

#include <utility>
#include <vector>

#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr int logoWidth = 50;
constexpr int logoHeight = 30;
constexpr int gap = 8;

/// The rows of the menu that a narrow editor has.
enum MoreRow : std::size_t { undoRow, redoRow, docsRow, versionRow };

juce::String version() {
    return "v" QUILLO_VERSION;
}

juce::String stepTitle(const juce::String& verb, const std::optional<std::string>& step) {
    return step ? verb + ": " + juceText(escaped(*step)) : verb;
}

}  // namespace

Header::Header(RuleListEditor& editor, HeaderActions actions)
    : editor_(editor),
      actions_(std::move(actions)),
      import_("Import", IconName::importFile, actions_.onImport),
      export_("Export", IconName::exportFile, actions_.onExport),
      undo_("Undo", IconName::undo, [this] { editor_.undo(); }),
      redo_("Redo", IconName::redo, [this] { editor_.redo(); }),
      docs_("Docs / Donate", actions_.onOpenURL),
      more_("More", IconName::more, [this] { openMore(); }) {
    for (auto* button : std::initializer_list<juce::Component*>{&import_, &export_, &undo_, &redo_, &docs_}) {
        addAndMakeVisible(*button);
    }
    addChildComponent(more_);
    refresh();
}

void Header::refresh() {
    undo_.setEnabled(editor_.undoName().has_value());
    redo_.setEnabled(editor_.redoName().has_value());
    undo_.setTooltip(stepTitle("Undo", editor_.undoName()));
    redo_.setTooltip(stepTitle("Redo", editor_.redoName()));
}

void Header::openMore() {
    const std::vector<juce::String> labels{stepTitle("Undo", editor_.undoName()),
                                           stepTitle("Redo", editor_.redoName()), docs_.getButtonText(),
                                           version()};
    std::set<std::size_t> disabled{versionRow};
    if (!editor_.undoName()) {
        disabled.insert(undoRow);
    }
    if (!editor_.redoName()) {
        disabled.insert(redoRow);
    }
    PopupMenuOverlay::open(*this, more_.getBounds(), {"More", labels, {}, disabled},
                           [this, onOpenURL = actions_.onOpenURL](std::size_t row) {
                               if (row == undoRow) {
                                   editor_.undo();
                               } else if (row == redoRow) {
                                   editor_.redo();
                               } else if (row == docsRow) {
                                   onOpenURL();
                               }
                           });
}

juce::Rectangle<int> Header::versionArea() const {
    const auto width = textWidth(version(), style::valueText);
    return getLocalBounds().withTrimmedRight(style::barPadding).removeFromRight(width);
}

void Header::resized() {
    auto area = getLocalBounds().reduced(style::barPadding, 0);
    area.removeFromLeft(logoWidth + gap);
    const bool narrow = environment<MySizeCategoryKey>(*this) == MySizeCategory::small;
    undo_.setVisible(!narrow);
    redo_.setVisible(!narrow);
    for (auto* button : {&import_, &export_, &undo_, &redo_}) {
        if (!button->isVisible()) {
            continue;
        }
        button->setBounds(area.removeFromLeft(style::iconButtonSize)
                              .withSizeKeepingCentre(style::iconButtonSize, style::iconButtonSize));
        area.removeFromLeft(gap);
    }
    docs_.setVisible(!narrow);
    more_.setVisible(narrow);
    if (narrow) {
        more_.setBounds(area.removeFromRight(style::iconButtonSize)
                            .withSizeKeepingCentre(style::iconButtonSize, style::iconButtonSize));
        return;
    }
    area.removeFromRight(versionArea().getWidth() + gap + 2);
    const auto width = docs_.preferredWidth();
    docs_.setBounds(area.removeFromRight(width).withSizeKeepingCentre(width, docs_.preferredHeight() + 5));
}

void Header::parentHierarchyChanged() {
    set<MyPrimaryColor>(environment<PaletteKey>(*this).primaryText);
}

void Header::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto logo = getLocalBounds().withTrimmedLeft(style::barPadding).removeFromLeft(logoWidth);
    drawIcon(graphics, IconName::logo, logo.withSizeKeepingCentre(logoWidth, logoHeight).toFloat(),
             displayColour(palette.primaryText));
    if (docs_.isVisible()) {
        graphics.setColour(displayColour(palette.secondaryText));
        graphics.setFont(textFont(style::valueText));
        graphics.drawText(version(),
                          onBaseline(versionArea(), graphics.getCurrentFont(), textFont(style::buttonText)),
                          juce::Justification::centredRight, false);
    }
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.fillRect(getLocalBounds().removeFromBottom(1));
}

}  // namespace quillo
