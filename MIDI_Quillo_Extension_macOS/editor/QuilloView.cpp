// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/QuilloView.hpp"

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

#include "editor/AlertView.hpp"
#include "editor/EntryRules.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Fonts.hpp"
#include "editor/InstalledFiles.hpp"
#include "editor/LearnOverlay.hpp"
#include "editor/PanicKey.hpp"
#include "editor/PlayedRules.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/PresetExchange.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int noticeMargin = 24;

std::filesystem::path pathOf(const juce::File& file) {
    return {file.getFullPathName().toStdString()};
}

std::vector<std::filesystem::path> pathsOf(const juce::StringArray& files) {
    std::vector<std::filesystem::path> paths;
    for (const auto& file : files) {
        paths.emplace_back(file.toStdString());
    }
    return paths;
}

std::optional<std::filesystem::path> examplePresets() {
    const auto binary = pathOf(juce::File::getSpecialLocation(juce::File::currentExecutableFile));
    return firstFolder(examplePlaces(binary, dataFolders()));
}

/// The folders for the browser, as they are now.
PresetFolders presetFolders() {
    PresetFolders folders{.home = pathOf(juce::File::getSpecialLocation(juce::File::userHomeDirectory))};
    folders.examples = examplePresets();
    if (!lastPresetFolder().empty()) {
        folders.last = lastPresetFolder();
    }
    return folders;
}

bool isKey(const juce::KeyPress& key, int code, int modifiers) {
    return key == juce::KeyPress(code, juce::ModifierKeys(modifiers), 0);
}

bool isTypedOnAGrip(const juce::KeyPress& key) {
    const auto modifiers = key.getModifiers();
    return key.getTextCharacter() > ' ' && key.getKeyCode() != juce::KeyPress::deleteKey &&
           !modifiers.isCommandDown() && !modifiers.isCtrlDown() && !modifiers.isAltDown() &&
           MyDragAndDropForEachDragHandle::isOneFocused();
}

/// Nobody means to keep presets among the examples.
void rememberFolderOf(const std::filesystem::path& preset) {
    if (preset.parent_path() != presetFolders().examples) {
        lastPresetFolder() = preset.parent_path();
    }
}

}  // namespace

QuilloView::QuilloView(EditorUnit& unit)
    : OverlayHost(static_cast<juce::Component&>(*this)),
      unit_(unit),
      model_(unit.model()),
      editor_(
          model_,
          [this](std::vector<Rule> rules, RuleShelf shelf) {
              unit_.onRulesChanged(std::move(rules), std::move(shelf));
          },
          [this](const RuleOutputVariantsV2& message) { unit_.onInstantMessageClick(message); }),
      header_(editor_, {[this] { showImporter(); }, [this] { showExporter(); }, [this] { showGuide(); },
                        unit.tellsWhatItDoes() ? std::function([this] { unit_.panic(); }) : nullptr,
                        unit.tellsWhatItDoes() ? std::function([this] { unit_.sendAllOnLoad(); }) : nullptr,
                        [this] { setFormOfAll(); }, search_.actions(),
                        [this](bool onlyPlayed) { showPlaying(onlyPlayed); }}),
      footer_({[this](const MIDIRuleType& type) { addRule([&] { editor_.add(type); }); },
               [this] { addRule([this] { editor_.addNotesAsPlayed(); }); },
               [this](juce::Component& opener) { learnNewRule(opener); }},
              [this](const Example& example) { importExample(example); }),
      logger_(unit, [this] { resized(); }),
      panicAnswer_(
          unit.notesEndWhenRulesChange(),
          {[this](bool end) { unit_.setNotesEndWhenRulesChange(end); }, [this] { dismissPanicAnswer(); }}),
      forms_(model_->rulesInOneLine()),
      rulesObservation_(model_->observeRules([this] { rulesChanged(); })),
      alertObservation_(model_->observeAlert([this] { showAlert(); })),
      panicObservation_(model_->observePanic([this] { showPanicAnswer(); })),
      tooltips_(this) {
    setLookAndFeel(&lookAndFeel_);
    setTitle("MIDI Quillo");
    set<PaletteKey>(Palette());
    set<MySizeCategoryKey>(MySizeCategory::medium);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    list_.makeRow = [this](const UUID& id) -> std::unique_ptr<juce::Component> { return makeCard(id); };
    list_.heightOfRow = [this](const UUID& id, int width) {
        if (forms_.isInOneLine(id)) {
            return style::cardInOneLine;
        }
        const auto* shown = shown_.find(id);
        return shown != nullptr ? RuleView::heightFor(shown->rule, width, why_.remark(id), shown_.run(id))
                                : 0;
    };
    list_.onMove = [this](const std::vector<UUID>& cards, std::size_t position) {
        chosen_.moved(cards, position);
    };
    list_.onSelection = [this] { showChosen(); };
    list_.setFooter(footer_, [this](int width) { return footer_.heightFor(width); });
    setUpLogs();
    editor_.setOnWalk([this](const UUID& id) { showChange(id); });
    juce::Desktop::getInstance().addFocusChangeListener(this);
    addAndMakeVisible(header_);
    addAndMakeVisible(list_);
    addAndMakeVisible(logger_);
    addChildComponent(panicAnswer_);
    addChildComponent(dropHint_);
    int order = 0;
    for (auto* part : std::initializer_list<juce::Component*>{&header_, &panicAnswer_, &list_, &logger_}) {
        part->setExplicitFocusOrder(++order);
    }
    header_.showForm(forms_.areAllInOneLine());
    setSize(500, 250);
    rulesChanged();
    onOverlayClosed = [this] { showAlert(); };
    showAlert();
    showPanicAnswer();
}

QuilloView::~QuilloView() {
    juce::Desktop::getInstance().removeFocusChangeListener(this);
    onOverlayClosed = nullptr;
    closeOverlay();
    setLookAndFeel(nullptr);
}

RuleView* QuilloView::card(const UUID& id) const {
    return dynamic_cast<RuleView*>(list_.row(id));
}

std::unique_ptr<RuleView> QuilloView::makeCard(const UUID& id) {
    const Binding<RuleEntry> data(
        [this, id] {
            const auto* shown = shown_.find(id);
            return shown != nullptr ? shown->rule : RuleEntry();
        },
        [this, id](const RuleEntry& rule) { edit(id, rule); },
        [this, id](const RuleEntry& rule, FieldPlace field) { edit(id, rule, field); });
    auto card = std::make_unique<RuleView>(
        data, RuleViewActions{
                  [this, id](TriggerEntryType type) { editor_.changeTriggerType(editor_.cardOf(id), type); },
                  [this, id](const MIDIRuleType& type) { changeOutputType(id, type); },
                  [this, id] { editor_.duplicate(chosen_.rulesWith(id)); }, [this, id] { removeRule(id); },
                  [this, id] { editor_.send(id); },
                  [this, id](bool on) { editor_.setOff(chosen_.rulesWith(id), !on); },
                  [this, id](LearnButton& button) { learnTrigger(id, button); },
                  [this, id](juce::Component& button) { openCardMenu(id, button); }, runBinding(id),
                  [this, id](bool inOneLine) { setForm(id, inOneLine); }});
    const auto* shown = shown_.find(id);
    card->showOff(shown != nullptr && shown->off);
    card->showChosen(list_.selection().contains(id));
    card->setInOneLine(forms_.isInOneLine(id));
    card->showFound(search_.foundOn(id));
    card->showReason(why_.remark(id));
    if (const auto run = editor_.runOfCard(id)) {
        if (const auto hits = hitsOf(*run, model_->hits())) {
            card->showHits(*hits);
        }
    }
    return card;
}

RunBinding QuilloView::runBinding(const UUID& id) {
    return {
        [this, id] { return shown_.run(id); },
        [this, id](std::uint8_t from, std::uint8_t to) { editor_.setRange(editor_.cardOf(id), from, to); },
        [this, id](int offset) { editor_.transpose(editor_.cardOf(id), offset); },
        [this, id](const GenericByteV2& value) { editor_.sendAlike(editor_.cardOf(id), value); }};
}

void QuilloView::openCardMenu(const UUID& id, juce::Component& button) {
    enum Row : std::size_t { fold, noteOff };
    const auto run = shown_.run(id);
    std::set<std::size_t> disabled;
    if (!editor_.isFolded(id) && !editor_.canFold(id)) {
        disabled.insert(fold);
    }
    if (shown_.find(id)->rule.trigger.type != TriggerEntryType::NoteOn) {
        disabled.insert(noteOff);
    }
    PopupMenuOverlay::open(button, button.getLocalBounds(),
                           {"More",
                            {editor_.isFolded(id) ? "Unfold" : "Fold",
                             run.count > 1 ? "Make the Note Off too" : "Duplicate as Note Off"},
                            {},
                            disabled},
                           [this, id](std::size_t row) {
                               row == fold ? foldOrUnfold(id)
                                           : editor_.duplicateAsNoteOff(editor_.cardOf(id));
                           });
}

/// The card that the rule is on afterwards is seen, if the host has not restored other rules meanwhile.
void QuilloView::foldOrUnfold(const UUID& id) {
    editor_.isFolded(id) ? editor_.unfold(id) : editor_.fold(id);
    rulesChanged();
    if (const auto card = editor_.runOfCard(id)) {
        list_.scrollTo(editor_.rules()[card->first].id);
    }
}

/// Another channel is for all cards that are chosen together.
void QuilloView::edit(const UUID& id, const RuleEntry& rule, std::optional<FieldPlace> stepped) {
    const auto* shown = shown_.find(id);
    const auto change = shown != nullptr ? channelChange(shown->rule, rule) : std::nullopt;
    if (change && chosen_.areSeveral(id)) {
        editor_.changeChannel(chosen_.rulesWith(id), *change);
    } else if (stepped) {
        editor_.step(editor_.cardOf(id), rule, *stepped);
    } else {
        editor_.edit(editor_.cardOf(id), rule);
    }
}

void QuilloView::showChosen() {
    list_.forEachRow([this](std::size_t position, juce::Component& row) {
        dynamic_cast<RuleView&>(row).showChosen(list_.selection().contains(list_.items()[position]));
    });
}

void QuilloView::advance(double seconds) {
    followPlaying();
    list_.forEachRow([&](std::size_t position, juce::Component& row) {
        auto& card = dynamic_cast<RuleView&>(row);
        card.advance(seconds);
        const auto shown = *shown_.position(list_.items()[position]);
        if (const auto hits = hitsOf(editor_.cards()[shown], model_->hits())) {
            card.showHits(*hits);
        }
    });
    panicAnswer_.advance(seconds);
    logger_.openedForm().watch();
}

void QuilloView::setForm(const UUID& id, bool inOneLine) {
    forms_.set(id, inOneLine);
    if (auto* changed = card(id)) {
        changed->setInOneLine(inOneLine);
    }
    list_.refreshRows({id});
    list_.scrollTo(id);
}

void QuilloView::setFormOfAll() {
    forms_.setAllInOneLine(!forms_.areAllInOneLine());
    model_->setRulesInOneLine(forms_.areAllInOneLine());
    header_.showForm(forms_.areAllInOneLine());
    list_.forEachRow([this](std::size_t /*position*/, juce::Component& row) {
        dynamic_cast<RuleView&>(row).setInOneLine(forms_.areAllInOneLine());
    });
    list_.refreshRows();
}

void QuilloView::showPlaying(bool onlyPlayed) {
    played_ = onlyPlayed ? std::optional(playedNow()) : std::nullopt;
    showItems();
}

void QuilloView::showItems() {
    list_.setItems(shownIds());
    search_.show();
    repaint();
}

/// The hits are those of the list that is shown: an edit is followed by a drain before time passes. All cards
/// stay while a menu is open or some are dragged.
void QuilloView::followPlaying() {
    if (!played_ || overlay() != nullptr || list_.isDragging()) {
        return;
    }
    if (std::exchange(*played_, playedNow()) != *played_) {
        showItems();
    }
}

/// The card that has the keyboard is among them.
std::set<UUID> QuilloView::playedNow() const {
    std::vector<RuleHits> hits;
    for (const auto& card : editor_.cards()) {
        hits.push_back(hitsOf(card, model_->hits()).value_or(RuleHits()));
    }
    std::set<UUID> played;
    for (const auto position : playedRules(hits)) {
        played.insert(shown_.all()[position].id);
    }
    if (const auto inUse = list_.itemWithFocus()) {
        played.insert(*inUse);
    }
    return played;
}

bool QuilloView::isLeftOut(const UUID& id) const {
    return played_ && !played_->contains(id);
}

std::vector<UUID> QuilloView::shownIds() const {
    std::vector<UUID> ids;
    for (const auto& shown : shown_.all()) {
        if (!isLeftOut(shown.id)) {
            ids.push_back(shown.id);
        }
    }
    return ids;
}

void QuilloView::changeOutputType(const UUID& id, const MIDIRuleType& type) {
    if (const auto* output = type.getIf<MIDIRuleType::OutputType>()) {
        editor_.changeOutputType(editor_.cardOf(id), output->type);
    } else {
        editor_.sendController(editor_.cardOf(id),
                               type.getIf<MIDIRuleType::ControlChangeShortCut>()->controller);
    }
}

void QuilloView::addRule(const std::function<void()>& add) {
    const auto count = editor_.rules().size();
    add();
    if (editor_.rules().size() > count) {
        setForm(editor_.rules()[count].id, false);
    }
}

/// Learned for a rule that is there, or for a new one.
void QuilloView::learnTrigger(const UUID& id, LearnButton& button) {
    LearnOverlay::open(button, model_, [this, id](const std::vector<RuleTriggerEntry>& triggers) {
        editor_.learn(editor_.cardOf(id), triggers);
    });
}

void QuilloView::learnNewRule(juce::Component& opener) {
    LearnOverlay::open(opener, model_, [this](const std::vector<RuleTriggerEntry>& triggers) {
        addRule([&] { editor_.addWaitingFor(triggers); });
    });
}

/// What came in can be asked about and waited for, what went out be sent again.
void QuilloView::setUpLogs() {
    auto& in = logger_.openedForm().inList();
    const auto always = [](const EventLogEntryVariants&) { return true; };
    const auto toggleWhy = [this](const EventLogEntryVariants& event) {
        why_.isOpen() ? endWhy() : askWhy(event);
    };
    in.setActions({{"Why", toggleWhy, always},
                   {"New rule",
                    [this](const EventLogEntryVariants& event) {
                        addRule([&] { editor_.addWaitingFor({*triggerFor(event)}); });
                    },
                    [](const EventLogEntryVariants& event) { return triggerFor(event).has_value(); }}});
    in.onReturn = toggleWhy;
    in.onChoose = [this] { followChosenEntry(); };
    logger_.openedForm().outList().setActions(
        {{"New rule",
          [this](const EventLogEntryVariants& event) {
              addRule([&] { editor_.addSending(*outputFor(event)); });
          },
          [](const EventLogEntryVariants& event) { return outputFor(event).has_value(); }}});
}

/// An open question goes on with the next entry that is chosen, and ends with none.
void QuilloView::followChosenEntry() {
    const auto* event = logger_.openedForm().inList().chosen();
    if (why_.isOpen() && event != nullptr) {
        askWhy(*event);
    } else if (why_.isOpen()) {
        endWhy();
    }
}

void QuilloView::askWhy(const EventLogEntryVariants& event) {
    why_.ask(event);
    logger_.openedForm().inList().setActionLabel(0, "Close");
    showReasons();
    if (const auto& first = why_.firstConcerned()) {
        list_.scrollTo(*first);
    }
}

void QuilloView::endWhy() {
    why_.close();
    logger_.openedForm().inList().setActionLabel(0, "Why");
    showReasons();
}

void QuilloView::showReasons() {
    list_.forEachRow([this](std::size_t position, juce::Component& row) {
        dynamic_cast<RuleView&>(row).showReason(why_.remark(list_.items()[position]));
    });
    list_.refreshRows();
}

/// What undo or redo has changed comes into sight, also on a card that is higher than the list, and on one
/// that "Playing" has left out.
void QuilloView::showChange(const UUID& rule) {
    const auto id = editor_.cardOf(rule).front();
    if (isLeftOut(id)) {
        header_.endPlaying();
    }
    list_.scrollTo(id);
    auto* changed = card(id);
    if (changed != nullptr && !changed->isInOneLine() && outputChanged_ == id) {
        MyDragAndDropForEach::bringIntoSight(changed->output());
    }
}

/// Deleted by keys, the neighbour has the keyboard.
void QuilloView::removeRule(const UUID& id) {
    auto* removed = card(id);
    const bool byKeys = removed != nullptr && removed->buttons().deleteButton().hasKeyboardFocus(false);
    const auto position = *list_.positionOf(list_.selection().togetherWith(id).front());
    editor_.remove(chosen_.rulesWith(id));
    if (byKeys && shown_.find(id) == nullptr) {
        focusDeleteButton(position);
    }
}

/// That of the card at the position in the list, or of the last one; of a card in one line its first part.
/// Without cards there is only the way to add one.
void QuilloView::focusDeleteButton(std::size_t position) {
    list_.focus(position);
    const auto focused = list_.itemWithFocus();
    auto* neighbour = focused ? card(*focused) : nullptr;
    if (neighbour != nullptr && !neighbour->isInOneLine()) {
        neighbour->buttons().deleteButton().grabKeyboardFocus();
    }
}

void QuilloView::refreshCards(const ShownCards::Changes& changes) {
    outputChanged_.reset();
    std::vector<UUID> ids;
    for (const auto& [before, now] : changes.changed) {
        if (before.rule.trigger == now.rule.trigger && before.rule.name == now.rule.name) {
            outputChanged_ = now.id;
        }
        if (auto* changed = card(now.id)) {
            changed->showOff(now.off);
            changed->refresh();
        }
        ids.push_back(now.id);
    }
    if (!ids.empty()) {
        list_.refreshRows(ids);
    }
}

/// Cards stay with their first rules; only those that are others than before are refreshed.
void QuilloView::rulesChanged() {
    const auto changes = shown_.follow(editor_);
    search_.follow(changes);
    why_.askAgain();
    logger_.openedForm().askWhatNowAgain();
    if (!changes.added.empty()) {
        header_.endPlaying();
    }
    list_.setItems(shownIds());
    if (footer_.showsEmpty() != shown_.all().empty()) {
        footer_.showEmpty(shown_.all().empty());
        list_.refreshRows();
    }
    refreshCards(changes);
    if (why_.isOpen()) {
        showReasons();
    }
    if (search_.isOn()) {
        search_.show();
    }
    header_.refresh();
    list_.setVisible(!editor_.whyNotEditable());
    repaint();
}

/// An alert waits until the menu or the file browser that is open is closed, and while a field is typed into:
/// it would get the next keys, and half a value would be taken.
void QuilloView::showAlert() {
    const bool isTypedInto = isParentOf(MyTextInputImpl::typedInto());
    if ((overlay() != nullptr || isTypedInto) && !showsAlert(*this)) {
        return;
    }
    if (const auto& message = editor_.alertErrorMessage()) {
        showOverlay(std::make_unique<AlertView>(juceText(*message), [this] { editor_.dismissAlert(); }),
                    Opens::unasked);
    } else {
        closeOverlay();
    }
}

void QuilloView::showPanicAnswer() {
    if (const auto& answer = model_->panicAnswer()) {
        panicAnswer_.show(juceText(*answer));
        resized();
    } else {
        panicAnswer_.setVisible(false);
    }
}

/// The keyboard does not go with it.
void QuilloView::dismissPanicAnswer() {
    if (panicAnswer_.hasKeyboardFocus(true)) {
        auto& panic = header_.panicButton();
        (panic.isShowing() ? static_cast<juce::Component&>(panic) : header_.moreButton()).grabKeyboardFocus();
    }
    model_->dismissPanicAnswer();
}

void QuilloView::setStatusBar(std::unique_ptr<juce::Component> bar) {
    statusBar_ = std::move(bar);
    statusBar_->setExplicitFocusOrder(1);
    addAndMakeVisible(*statusBar_);
    resized();
}

void QuilloView::showGuide() {
    guide_.open();
}

void QuilloView::showImporter() {
    if (filePanels_.onImport) {
        filePanels_.onImport();
        return;
    }
    browse(PresetBrowser::Mode::open,
           [this](const std::filesystem::path& file, Existing /*existing*/) { importFile(file); });
}

void QuilloView::showExporter() {
    if (filePanels_.onExport) {
        filePanels_.onExport();
        return;
    }
    browse(PresetBrowser::Mode::save, [this](const std::filesystem::path& file, Existing existing) {
        if (exportPresetFile(file, existing, editor_)) {
            rememberFolderOf(file);
        }
    });
}

void QuilloView::importFile(const std::filesystem::path& file) {
    if (importPresetFile(file, editor_)) {
        rememberFolderOf(file);
    }
}

/// Imported by keys, the first rule has the keyboard.
void QuilloView::importExample(const Example& example) {
    const bool byKeys = footer_.hasKeyboardFocus(true);
    const auto read = [&] { return std::vector(example.document.begin(), example.document.end()); };
    if (importPreset(example.file, read, editor_) && byKeys) {
        list_.focus(0);
    }
}

void QuilloView::browse(PresetBrowser::Mode mode, PresetBrowserView::OnChosen onChosen) {
    if (showsAlert(*this)) {
        return;
    }
    showOverlay(std::make_unique<PresetBrowserView>(
        PresetBrowser(mode, presetFolders()),
        [this, onChosen = std::move(onChosen)](const std::filesystem::path& file, Existing existing) {
            const auto use = onChosen;
            closeOverlay();
            use(file, existing);
        },
        [this] { closeOverlay(); }));
}

void QuilloView::resized() {
    set<MySizeCategoryKey>(sizeCategory(getWidth()));
    auto area = getLocalBounds();
    header_.setBounds(area.removeFromTop(style::headerHeight));
    header_.resized();
    if (statusBar_ != nullptr) {
        statusBar_->setBounds(area.removeFromTop(statusBar_->getHeight()));
    }
    logger_.setRoom(area);
    logger_.setBounds(area.removeFromBottom(logger_.preferredHeight()));
    list_.setBounds(area);
    dropHint_.setBounds(area);
    panicAnswer_.placeIn(area);
}

void QuilloView::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    graphics.fillAll(displayColour(palette.background));
    const auto say = [&](const juce::String& text, MyRGB colour) {
        graphics.setColour(displayColour(colour));
        graphics.setFont(textFont(style::valueText));
        graphics.drawFittedText(text, list_.getBounds().reduced(noticeMargin), juce::Justification::centred,
                                10);
    };
    if (const auto& reason = editor_.whyNotEditable()) {
        say(juceText(*reason), palette.primaryText);
    } else if (played_ && list_.items().empty() && !footer_.showsEmpty()) {
        say("No rule has fired yet. Play, and those that fire are shown.", palette.secondaryText);
    }
}

/// Not behind a menu: its rows stand for rules as they are.
bool QuilloView::takeKey(const juce::KeyPress& key) {
    const int command = juce::ModifierKeys::commandModifier;
    if (isKey(key, 'z', command)) {
        editor_.undo();
    } else if (isKey(key, 'z', command | juce::ModifierKeys::shiftModifier) || isKey(key, 'y', command)) {
        editor_.redo();
    } else if (isKey(key, 'f', command)) {
        search_.begin();
    } else if (isTypedOnAGrip(key)) {
        search_.begin(juce::String::charToString(key.getTextCharacter()));
    } else if (isKey(key, '-', command)) {
        setFormOfAll();
    } else {
        return false;
    }
    return true;
}

bool QuilloView::keyPressed(const juce::KeyPress& key) {
    const auto is = [&key](int code, int modifiers) { return isKey(key, code, modifiers); };
    if (is(juce::KeyPress::escapeKey, 0) && why_.isOpen()) {
        endWhy();
        return true;
    }
    if (is(juce::KeyPress::escapeKey, 0) && logger_.openedForm().isAskingWhatNow()) {
        logger_.openedForm().endWhatNow();
        return true;
    }
    if (overlay() == nullptr && (chosen_.keyPressed(key) || takeKey(key))) {
        return true;
    }
    if (isPanicKey(key) && unit_.tellsWhatItDoes()) {
        unit_.panic();
        return true;
    }
    if (is(juce::KeyPress::escapeKey, 0) && model_->panicAnswer()) {
        dismissPanicAnswer();
        return true;
    }
    if (is(juce::KeyPress::escapeKey, 0) && search_.isOn()) {
        search_.end();
        return true;
    }
    const bool isTab =
        is(juce::KeyPress::tabKey, 0) || is(juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier);
    if (isTab && !hasKeyboardFocus(true)) {
        enterByKeyboard(!key.getModifiers().isShiftDown());
        return true;
    }
    return false;
}

void QuilloView::enterByKeyboard(bool forward) {
    if (overlay() != nullptr) {
        overlay()->grabKeyboardFocus();
        return;
    }
    if (lastFocus_ != nullptr && lastFocus_->isShowing()) {
        lastFocus_->moveKeyboardFocusToSibling(forward);
        return;
    }
    const auto views = createKeyboardFocusTraverser()->getAllComponents(this);
    (forward ? views.front() : views.back())->grabKeyboardFocus();
}

void QuilloView::globalFocusChanged(juce::Component* focused) {
    if (overlay() == nullptr) {
        showAlert();
    }
    if (focused == nullptr || !isParentOf(focused) ||
        (overlay() != nullptr && overlay()->isParentOf(focused))) {
        return;
    }
    lastFocus_ = MyTextInputImpl::around(focused);
    takeKeyboardFromBelow();
}

bool QuilloView::isInterestedInFileDrag(const juce::StringArray& files) {
    return !files.isEmpty();
}

void QuilloView::fileDragEnter(const juce::StringArray& files, int /*x*/, int /*y*/) {
    dropHint_.show(effectOfDropping(pathsOf(files)));
}

void QuilloView::fileDragExit(const juce::StringArray& /*files*/) {
    dropHint_.setVisible(false);
}

void QuilloView::filesDropped(const juce::StringArray& files, int /*x*/, int /*y*/) {
    dropHint_.setVisible(false);
    MyTextInputImpl::finishTypingElsewhere();
    if (!showsAlert(*this)) {
        closeOverlay();
    }
    const auto paths = pathsOf(files);
    if (const auto drop = effectOfDropping(paths); !drop.works) {
        editor_.alert(drop.words);
        return;
    }
    importFile(paths.front());
}

}  // namespace quillo
