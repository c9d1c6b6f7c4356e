// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Header.hpp"

#include <algorithm>
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
constexpr int headerGap = 8;
/// How much higher than elsewhere buttons are here.
constexpr int buttonLift = 5;
/// The search field where it stands beside the buttons, and the room that the version leaves for it.
constexpr int searchWidth = 190;
constexpr int leastSearchWidth = 110;
/// The least widths of a header with all its buttons, and of one with the search field beside them.
constexpr int widthForButtons = 497;
constexpr int widthForSearch = 660;

enum MoreRow : std::size_t { undoRow, redoRow, formRow, searchRow, onLoadRow, docsRow, panicRow, versionRow };

juce::String version() {
    return "v" QUILLO_VERSION;
}

/// Gives a button its place at the end of the area, if it is shown.
template <class Button>
void placeAtRight(Button& button, int height, juce::Rectangle<int>& area) {
    if (button.isVisible()) {
        const auto width = button.preferredWidth();
        button.setBounds(area.removeFromRight(width).withSizeKeepingCentre(width, height));
        area.removeFromRight(headerGap);
    }
}

juce::String stepTitle(const juce::String& verb, const std::optional<std::string>& step) {
    return step ? verb + ": " + juceText(escaped(*step)) : verb;
}

/// That is not switched off.
bool hasOnLoadRule(const RuleList& rules) {
    return std::ranges::any_of(rules, [](const RuleEntryIdentifiable& element) {
        return !element.off && element.rule.trigger.type == TriggerEntryType::OnLoad;
    });
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
      searchButton_("Search", IconName::search, [this] { openSearch(); }),
      search_(actions_.search),
      playing_("Playing", [this] { setPlaying(!isPlaying_); }),
      panic_("Panic", actions_.onPanic),
      docs_("Docs / Donate", actions_.onOpenURL),
      more_("More", IconName::more, [this] { openMore(); }) {
    for (auto* button :
         std::initializer_list<juce::Component*>{&import_, &export_, &undo_, &redo_, &form_, &searchButton_,
                                                 &search_, &playing_, &panic_, &docs_}) {
        addAndMakeVisible(*button);
    }
    searchButton_.setTooltip("Search (Ctrl+F)");
    playing_.setToggleable(true);
    playing_.setTooltip("Shows only the rules that fire while you play");
    panic_.setColours(style::alarmText, style::alarmEdge);
    panic_.setTooltip("Ends every note that sounds (Ctrl+Shift+P)");
    addAndMakeVisible(more_);
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
                                           "Search",
                                           "Send All On Load",
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
    if (!actions_.onSendAllOnLoad || !hasOnLoadRule(editor_.rules())) {
        disabled.insert(onLoadRow);
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
    case searchRow: openSearch(); break;
    case onLoadRow: actions_.onSendAllOnLoad(); break;
    case docsRow: actions_.onOpenURL(); break;
    case panicRow: actions_.onPanic(); break;
    default: break;
    }
}

juce::Rectangle<int> Header::versionArea() const {
    const auto width = textWidth(version(), style::valueText);
    return getLocalBounds().withTrimmedRight(style::barPadding).removeFromRight(width);
}

void Header::openSearch(const juce::String& text) {
    searching_ = true;
    resized();
    if (text.isEmpty()) {
        search_.begin();
    } else {
        search_.begin(text);
    }
}

void Header::closeSearch() {
    searching_ = false;
    search_.clear();
    setPlaying(false);
    resized();
}

void Header::setPlaying(bool playing) {
    if (std::exchange(isPlaying_, playing) != playing) {
        const Palette palette;
        playing_.setColours(playing ? palette.triggerInput : palette.primaryText,
                            playing ? palette.triggerInput : style::edge(palette));
        playing_.setToggleState(playing, juce::dontSendNotification);
        actions_.onPlaying(playing);
        resized();
    }
}

void Header::resized() {
    auto area = getLocalBounds().reduced(style::barPadding, 0);
    area.removeFromLeft(logoWidth + headerGap);
    searching_ = (searching_ || !search_.text().isEmpty()) && !hasRoomForSearch();
    const bool inTheirPlace = (searching_ || isPlaying_) && !hasRoomForSearch();
    for (auto* part : std::initializer_list<juce::Component*>{&import_, &export_, &undo_, &redo_, &form_,
                                                              &searchButton_, &panic_, &docs_, &more_}) {
        part->setVisible(!inTheirPlace);
    }
    search_.setClosable(inTheirPlace);
    if (inTheirPlace) {
        showsVersion_ = false;
        layOutSearch(area, isPlaying_ || !isNarrow());
    } else {
        layOutButtons(area);
    }
    repaint();
}

bool Header::isNarrow() const {
    return getWidth() < widthForButtons;
}

bool Header::hasRoomForSearch() const {
    return getWidth() >= widthForSearch;
}

void Header::layOutButtons(juce::Rectangle<int> area) {
    for (auto* button : {&undo_, &redo_, &form_}) {
        button->setVisible(!isNarrow());
    }
    searchButton_.setVisible(!isNarrow() && !hasRoomForSearch());
    for (auto* button : {&import_, &export_, &undo_, &redo_, &form_, &searchButton_}) {
        if (button->isVisible()) {
            button->setBounds(area.removeFromLeft(style::iconButtonSize)
                                  .withSizeKeepingCentre(style::iconButtonSize, style::iconButtonSize));
            area.removeFromLeft(headerGap);
        }
    }
    area = layOutRight(area);
    search_.setVisible(hasRoomForSearch());
    playing_.setVisible(hasRoomForSearch());
    if (hasRoomForSearch()) {
        const auto width = searchWidth + headerGap + playing_.preferredWidth();
        layOutSearch(area.removeFromLeft(std::min(area.getWidth(), width)), true);
    }
}

void Header::layOutSearch(juce::Rectangle<int> area, bool withPlaying) {
    search_.setVisible(true);
    playing_.setVisible(withPlaying);
    if (withPlaying) {
        placeAtRight(playing_, playing_.preferredHeight() + buttonLift, area);
    }
    search_.setBounds(area.withSizeKeepingCentre(area.getWidth(), style::iconButtonSize));
}

/// What stands at the right; what is left of the area. Where there is not room for all, the version goes, and
/// then "Panic".
juce::Rectangle<int> Header::layOutRight(juce::Rectangle<int> area) {
    const bool narrow = isNarrow();
    docs_.setVisible(!narrow);
    const auto search = hasRoomForSearch() ? leastSearchWidth + 2 * headerGap + playing_.preferredWidth() : 0;
    const auto others =
        search + headerGap + more_.preferredWidth() + (narrow ? 0 : headerGap + docs_.preferredWidth());
    const auto panic = headerGap + panic_.preferredWidth();
    const auto version = versionArea().getWidth() + headerGap + 2;
    panic_.setVisible(actions_.onPanic && others + panic <= area.getWidth());
    showsVersion_ = !narrow && others + panic + version <= area.getWidth();
    area.removeFromRight(showsVersion_ ? version : 0);
    placeAtRight(more_, docs_.preferredHeight() + buttonLift, area);
    placeAtRight(docs_, docs_.preferredHeight() + buttonLift, area);
    placeAtRight(panic_, panic_.preferredHeight() + buttonLift, area);
    return area;
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
