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
/// How much higher than elsewhere buttons are here.
constexpr int buttonLift = 5;

/// The rows of the menu that a narrow editor has.
enum MoreRow : std::size_t { undoRow, redoRow, formRow, docsRow, panicRow, versionRow };

juce::String version() {
    return "v" QUILLO_VERSION;
}

/// Gives a button its place at the end of the area, if it is shown.
template <class Button>
void placeAtRight(Button& button, int height, juce::Rectangle<int>& area) {
    if (button.isVisible()) {
        const auto width = button.preferredWidth();
        button.setBounds(area.removeFromRight(width).withSizeKeepingCentre(width, height));
        area.removeFromRight(gap);
    }
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
      form_("One line for each rule", IconName::oneLine, actions_.onForm),
      panic_("Panic", actions_.onPanic),
      docs_("Docs / Donate", actions_.onOpenURL),
      more_("More", IconName::more, [this] { openMore(); }) {
    for (auto* button : std::initializer_list<juce::Component*>{&import_, &export_, &undo_, &redo_, &form_,
                                                                &panic_, &docs_}) {
        addAndMakeVisible(*button);
    }
    panic_.setColours(style::alarmText, style::alarmEdge);
    panic_.setTooltip("Ends every note that sounds (Ctrl+Shift+P)");
    addChildComponent(more_);
    refresh();
}

void Header::refresh() {
    undo_.setEnabled(editor_.undoName().has_value());
    redo_.setEnabled(editor_.redoName().has_value());
    undo_.setTooltip(stepTitle("Undo", editor_.undoName()));
    redo_.setTooltip(stepTitle("Redo", editor_.redoName()));
}

void Header::showForm(bool inOneLine) {
    const juce::String title = inOneLine ? "Fields for each rule" : "One line for each rule";
    form_.setIcon(inOneLine ? IconName::fields : IconName::oneLine);
    form_.setTitle(title);
    form_.setTooltip(title + " (Ctrl+-)");
}

void Header::openMore() {
    const std::vector<juce::String> labels{stepTitle("Undo", editor_.undoName()),
                                           stepTitle("Redo", editor_.redoName()),
                                           form_.getTitle(),
                                           docs_.getButtonText(),
                                           panic_.getButtonText(),
                                           version()};
    std::set<std::size_t> disabled{versionRow};
    if (!editor_.undoName()) {
        disabled.insert(undoRow);
    }
    if (!editor_.redoName()) {
        disabled.insert(redoRow);
    }
    if (!actions_.onPanic) {
        disabled.insert(panicRow);
    }
    PopupMenuOverlay::open(*this, more_.getBounds(), {"More", labels, {}, disabled},
                           [this](std::size_t row) { doRow(row); });
}

void Header::doRow(std::size_t row) {
    switch (row) {
    case undoRow: editor_.undo(); break;
    case redoRow: editor_.redo(); break;
    case formRow: actions_.onForm(); break;
    case docsRow: actions_.onOpenURL(); break;
    case panicRow: actions_.onPanic(); break;
    default: break;
    }
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
    form_.setVisible(!narrow);
    for (auto* button : {&import_, &export_, &undo_, &redo_, &form_}) {
        if (!button->isVisible()) {
            continue;
        }
        button->setBounds(area.removeFromLeft(style::iconButtonSize)
                              .withSizeKeepingCentre(style::iconButtonSize, style::iconButtonSize));
        area.removeFromLeft(gap);
    }
    layOutRight(area, narrow);
}

/// What stands at the right. Where there is not room for all, the version goes, and then "Panic".
void Header::layOutRight(juce::Rectangle<int> area, bool narrow) {
    docs_.setVisible(!narrow);
    more_.setVisible(narrow);
    const auto others = gap + (narrow ? more_.preferredWidth() : docs_.preferredWidth());
    const auto panic = gap + panic_.preferredWidth();
    const auto version = versionArea().getWidth() + gap + 2;
    panic_.setVisible(actions_.onPanic && others + panic <= area.getWidth());
    showsVersion_ = !narrow && others + panic + version <= area.getWidth();
    area.removeFromRight(showsVersion_ ? version : 0);
    placeAtRight(more_, style::iconButtonSize, area);
    placeAtRight(docs_, docs_.preferredHeight() + buttonLift, area);
    placeAtRight(panic_, panic_.preferredHeight() + buttonLift, area);
}

void Header::parentHierarchyChanged() {
    set<MyPrimaryColor>(environment<PaletteKey>(*this).primaryText);
}

void Header::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto logo = getLocalBounds().withTrimmedLeft(style::barPadding).removeFromLeft(logoWidth);
    drawIcon(graphics, IconName::logo, logo.withSizeKeepingCentre(logoWidth, logoHeight).toFloat(),
             displayColour(palette.primaryText));
    if (showsVersion_) {
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
