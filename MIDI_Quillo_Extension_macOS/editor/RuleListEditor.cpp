// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListEditor.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include "editor/DecimalText.hpp"
#include "editor/RunEdit.hpp"
#include "platform/FatalError.hpp"
#include "rules/RuleLabel.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

using Offset = RuleList::difference_type;

/// The number in a name such as "Message #3"; 0 for every other name.
std::int64_t numberOf(std::string_view name) {
    constexpr std::string_view prefix = "Message #";
    if (name.size() <= prefix.size() || !name.starts_with(prefix)) {
        return 0;
    }
    return parseSignedDecimal(name.substr(prefix.size())).value_or(0);
}

RuleShelf shelfOf(const RuleList& list) {
    RuleShelf shelf;
    std::uint32_t place = 0;
    for (const auto& element : list) {
        if (element.off) {
            shelf.push_back({place, ruleFromElement(element)});
        } else {
            ++place;
        }
    }
    return shelf;
}

/// The entry with another trigger; what becomes of the event stays as it is.
RuleEntry waitingFor(const RuleTriggerEntry& trigger, const RuleEntry& entry) {
    auto changed = withUsableChoices(trigger.type, entry);
    changed.trigger = trigger;
    changed.trigger.passThrough = entry.trigger.passThrough;
    return changed;
}

/// The entry of the rule that ends what another one has begun.
RuleEntry ending(RuleEntry entry) {
    if (entry.output.type == OutputEntryType::NoteOn) {
        entry.output.type = OutputEntryType::NoteOff;
    }
    return entry;
}

RuleList at(const RuleList& list, const std::vector<std::size_t>& positions) {
    RuleList part;
    for (const auto position : positions) {
        part.push_back(list[position]);
    }
    return part;
}

/// The list without those at these positions, which ascend.
RuleList without(const RuleList& list, const std::vector<std::size_t>& positions) {
    RuleList rest;
    rest.reserve(list.size() - positions.size());
    auto next = positions.begin();
    for (std::size_t position = 0; position < list.size(); ++position) {
        if (next != positions.end() && *next == position) {
            ++next;
        } else {
            rest.push_back(list[position]);
        }
    }
    return rest;
}

std::string stepName(const std::string& verb, const std::string& first, std::size_t count) {
    return verb + " " + first + (count > 1 ? " (" + std::to_string(count) + " rules)" : "");
}

}  // namespace

std::int64_t nextIndex(const RuleList& rules) {
    std::int64_t greatest = 0;
    for (const auto& element : rules) {
        greatest = std::max(greatest, numberOf(element.rule.name));
    }
    if (greatest == std::numeric_limits<std::int64_t>::max()) {
        fatalError("there is no number left for a new rule's name");
    }
    return greatest + 1;
}

std::optional<UUID> changedRule(const RuleList& before, const RuleList& after) {
    if (after.empty()) {
        return std::nullopt;
    }
    const auto [old, now] = std::ranges::mismatch(before, after);
    if (now == after.end()) {
        return after.back().id;
    }
    if (old == before.end()) {
        return now->id;
    }
    const auto placeIn = [](const RuleList& list, const UUID& id) {
        return std::ranges::find(list, id, &RuleEntryIdentifiable::id) - list.begin();
    };
    const auto oldPlace = placeIn(after, old->id);
    const auto placeBefore = placeIn(before, now->id);
    const bool bothMoved = oldPlace < std::ssize(after) && placeBefore < std::ssize(before);
    return bothMoved && placeBefore < oldPlace ? old->id : now->id;
}

std::vector<Rule> rulesOf(const RuleList& list) {
    std::vector<Rule> rules;
    rules.reserve(list.size());
    for (const auto& element : list) {
        if (!element.off) {
            rules.push_back(ruleFromElement(element));
        }
    }
    return rules;
}

PluginData documentOf(const RuleList& list) {
    return {rulesOf(list), shelfOf(list)};
}

RuleListEditor::RuleListEditor(std::shared_ptr<QuilloModel> model, OnRulesChanged onRulesChanged,
                               OnInstantMessageClick onInstantMessageClick)
    : model_(std::move(model)),
      onRulesChanged_(std::move(onRulesChanged)),
      onInstantMessageClick_(std::move(onInstantMessageClick)),
      rulesObservation_(model_->observeRules([this] {
          if (!changing_) {
              history_.clear();
              start_.reset();
              showArrived();
          }
      })) {
    showArrived();
}

/// The unit has brought in another list.
void RuleListEditor::showArrived() {
    folded_.forget();
    folded_.arrive(rules());
    folded_.follow({}, rules());
}

std::optional<PluginData> RuleListEditor::storedRules() const {
    return whyNotEditable() ? model_->rulesNotShown() : documentOf(rules());
}

std::optional<std::size_t> RuleListEditor::find(const UUID& id) const {
    const auto found = std::ranges::find(rules(), id, &RuleEntryIdentifiable::id);
    if (found == rules().end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(std::distance(rules().begin(), found));
}

RuleIds RuleListEditor::cardOf(const UUID& id) const {
    RuleIds ids;
    if (const auto card = folded_.cardOf(id)) {
        for (auto position = card->first; position < card->first + card->count; ++position) {
            ids.push_back(rules()[position].id);
        }
    }
    return ids;
}

bool RuleListEditor::canFold(const UUID& id) const {
    const auto run = folded_.runOf(id);
    return run && run->count > 1 && run != folded_.cardOf(id);
}

bool RuleListEditor::isFolded(const UUID& id) const {
    const auto card = folded_.cardOf(id);
    return card && card->count > 1;
}

/// Hands the rules to the engine; when that refuses them, the alert says why.
bool RuleListEditor::isTakenByEngine(PluginData data) {
    try {
        onRulesChanged_(std::move(data.rules), std::move(data.shelf));
    } catch (const FatalError& error) {
        alert(error.inWords());
        return false;
    }
    return true;
}

void RuleListEditor::show(RuleList list) {
    changing_ = true;
    folded_.follow(rules(), list);
    model_->setRules(std::move(list));
    changing_ = false;
}

/// Nothing is changed while rules are not shown but by what replaces them all: that is the history's first
/// step.
void RuleListEditor::noteStart() {
    if (model_->rulesNotShown()) {
        start_ = RulesNotShown{*whyNotEditable(), *model_->rulesNotShown()};
    }
}

/// The step is noted before the list is shown: a user who sees the new list can undo it.
bool RuleListEditor::apply(RuleList after, const std::string& stepName, const std::string& joinKey) {
    if (after == rules()) {
        return true;
    }
    if (!isTakenByEngine(documentOf(after))) {
        return false;
    }
    history_.note(stepName, rules(), after, joinKey);
    show(std::move(after));
    return true;
}

void RuleListEditor::append(const std::vector<Maker>& makers) {
    if (whyNotEditable()) {
        alert(*whyNotEditable());
        return;
    }
    try {
        auto list = rules();
        for (const auto& make : makers) {
            list.push_back({UUID(), make(nextIndex(list))});
        }
        const auto name = "Add " + list[rules().size()].rule.name;
        apply(std::move(list), name);
    } catch (const FatalError& error) {
        alert(error.inWords());
    }
}

void RuleListEditor::add(const MIDIRuleType& type) {
    append({[&type](std::int64_t index) { return defaultEntry(type, index); }});
}

void RuleListEditor::addNotesAsPlayed() {
    append({[](std::int64_t index) {
        auto entry = defaultEntry(OutputEntryType::NoteOn, index);
        entry.trigger.type = TriggerEntryType::NoteOn;
        entry.trigger.passThrough = PassThroughV2::EatMatching;
        entry.output.channel = RuleOutputChannelV2::TriggerChannel{};
        entry.output.note = GenericByteV2::RespectiveTriggerByte{};
        entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
        return entry;
    }});
}

void RuleListEditor::addSending(const RuleOutputEntry& output) {
    append({[&output](std::int64_t index) {
        auto entry = defaultEntry(output.type, index);
        entry.output = output;
        return entry;
    }});
}

void RuleListEditor::addWaitingFor(const std::vector<RuleTriggerEntry>& triggers) {
    std::vector<Maker> makers;
    for (const auto& trigger : triggers) {
        const bool isSecond = !makers.empty();
        makers.emplace_back([&trigger, isSecond](std::int64_t index) {
            const auto entry = waitingFor(trigger, defaultEntry(OutputEntryType::NoteOn, index));
            return isSecond ? ending(entry) : entry;
        });
    }
    append(makers);
}

void RuleListEditor::learn(const RuleIds& card, const std::vector<RuleTriggerEntry>& triggers) {
    editCard(card, "Learn", [&](const RuleList& rules) {
        const auto& before = rules.front();
        RuleList learned{before};
        editElement(learned.front(), waitingFor(triggers.front(), before.rule));
        for (const auto& trigger : std::span(triggers).subspan(1)) {
            learned.push_back(before);
            learned.back().id = UUID();
            editElement(learned.back(), ending(waitingFor(trigger, before.rule)));
        }
        return learned;
    });
}

std::vector<std::size_t> RuleListEditor::find(const RuleIds& ids) const {
    const std::set<UUID> wanted(ids.begin(), ids.end());
    std::vector<std::size_t> positions;
    for (std::size_t position = 0; position < rules().size() && positions.size() < wanted.size();
         ++position) {
        if (wanted.contains(rules()[position].id)) {
            positions.push_back(position);
        }
    }
    return positions;
}

std::string RuleListEditor::nameOfStep(const std::string& verb,
                                       const std::vector<std::size_t>& positions) const {
    return stepName(verb, rules()[positions.front()].rule.name, positions.size());
}

void RuleListEditor::duplicate(const RuleIds& ids) {
    const auto positions = find(ids);
    if (positions.empty()) {
        return;
    }
    auto copies = at(rules(), positions);
    std::ranges::for_each(copies, [this](auto& copy) { becomeCopy(copy); });
    auto list = rules();
    list.insert(list.begin() + static_cast<Offset>(positions.back()) + 1, copies.begin(), copies.end());
    apply(std::move(list), nameOfStep("Duplicate", positions));
}

/// A copy shares a card where its original does.
void RuleListEditor::becomeCopy(RuleEntryIdentifiable& element) {
    const bool isJoined = folded_.isJoined(element.id);
    element.id = UUID();
    if (isJoined) {
        folded_.join(element.id);
    }
}

void RuleListEditor::duplicateAsNoteOff(const RuleIds& card) {
    editCard(card, "Make the Note Off of", [this](const RuleList& rules) {
        auto both = rules;
        for (auto copy : rules) {
            auto entry = ending(copy.rule);
            entry.trigger.type = TriggerEntryType::NoteOff;
            becomeCopy(copy);
            editElement(copy, std::move(entry));
            both.push_back(std::move(copy));
        }
        return both;
    });
}

void RuleListEditor::remove(const RuleIds& ids, const std::string& verb) {
    const auto positions = find(ids);
    if (!positions.empty()) {
        apply(without(rules(), positions), nameOfStep(verb, positions));
    }
}

void RuleListEditor::move(const RuleIds& ids, std::size_t position) {
    const auto positions = find(ids);
    if (positions.empty()) {
        return;
    }
    const auto moved = at(rules(), positions);
    auto list = without(rules(), positions);
    list.insert(list.begin() + static_cast<Offset>(std::min(position, list.size())), moved.begin(),
                moved.end());
    apply(std::move(list), nameOfStep("Move", positions));
}

void RuleListEditor::setOff(const RuleIds& ids, bool off) {
    const auto positions = find(ids);
    if (positions.empty()) {
        return;
    }
    auto list = rules();
    for (const auto position : positions) {
        list[position].off = off;
    }
    apply(std::move(list), nameOfStep(off ? "Switch off" : "Switch on", positions));
}

void RuleListEditor::editCard(const RuleIds& card, const std::string& verb,
                              const std::function<RuleList(const RuleList&)>& change,
                              const std::string& joinKey) {
    const auto positions = find(card);
    if (positions.empty()) {
        return;
    }
    const auto before = at(rules(), positions);
    const auto after = change(before);
    auto list = without(rules(), positions);
    list.insert(list.begin() + static_cast<Offset>(positions.front()), after.begin(), after.end());
    const bool applied = apply(std::move(list), nameOfStep(verb, positions), joinKey);
    if (applied && before.front().loadedMessage && !after.front().loadedMessage) {
        alertOfLoaded({before.front()});
    }
}

/// The messages of these rules, which were loaded, have been edited.
void RuleListEditor::alertOfLoaded(const RuleList& loaded) {
    const auto first = ruleFromElement(loaded.front());
    const auto more = loaded.size() - 1;
    if (const auto change = whatEditingChanges(first)) {
        alert(ruleLabel(*find(loaded.front().id), first.name) +
              " was edited, which has changed more than you see: " + *change + "." +
              (more > 0 ? " The same holds for " + std::to_string(more) + " more." : "") +
              " Undo brings it back.");
    }
}

void RuleListEditor::edit(const RuleIds& card, const RuleEntry& entry) {
    editCard(card, "Edit", [&entry](const RuleList& rules) { return edited(rules, entry); });
}

void RuleListEditor::endStepUnlessSoon() {
    const auto now = now_();
    if (now - std::exchange(lastStep_, now) > joinTime) {
        history_.endStep();
    }
}

void RuleListEditor::step(const RuleIds& card, const RuleEntry& entry, FieldPlace field) {
    endStepUnlessSoon();
    if (!card.empty()) {
        editCard(
            card, "Edit", [&entry](const RuleList& rules) { return edited(rules, entry); },
            card.front().text() + std::to_string(field));
    }
}

void RuleListEditor::changeTriggerType(const RuleIds& card, TriggerEntryType type) {
    editCard(card, "Edit", [type](const RuleList& rules) { return withTriggerType(rules, type); });
}

void RuleListEditor::changeOutputType(const RuleIds& card, OutputEntryType type) {
    editCard(card, "Edit", [type](const RuleList& rules) { return withOutputType(rules, type); });
}

void RuleListEditor::sendController(const RuleIds& card, std::uint8_t controller) {
    editCard(card, "Edit", [controller](const RuleList& rules) { return sendingZero(rules, controller); });
}

/// Rules that are new share the card.
void RuleListEditor::setRange(const RuleIds& card, std::uint8_t from, std::uint8_t to) {
    editCard(card, "Edit", [this, from, to](const RuleList& rules) {
        auto range = withRange(rules, from, to);
        for (const auto& element : std::span(range).subspan(1)) {
            folded_.join(element.id);
        }
        return range;
    });
}

void RuleListEditor::transpose(const RuleIds& card, int offset) {
    editCard(card, "Edit", [offset](const RuleList& rules) { return transposed(rules, offset); });
}

void RuleListEditor::sendAlike(const RuleIds& card, const GenericByteV2& value) {
    editCard(card, "Edit", [&value](const RuleList& rules) { return sendingAlike(rules, value); });
}

void RuleListEditor::changeChannel(const RuleIds& ids, const ChannelChange& change) {
    const auto positions = find(ids);
    if (positions.empty()) {
        return;
    }
    auto list = rules();
    RuleList loaded;
    for (const auto position : positions) {
        const auto before = list[position];
        editElement(list[position], changed(before.rule, change));
        if (before.loadedMessage && !list[position].loadedMessage) {
            loaded.push_back(before);
        }
    }
    if (apply(std::move(list), nameOfStep("Edit", positions)) && !loaded.empty()) {
        alertOfLoaded(loaded);
    }
}

bool RuleListEditor::paste(const RuleIds& behind, RuleList inserted) {
    if (whyNotEditable()) {
        alert(*whyNotEditable());
        return false;
    }
    if (inserted.empty()) {
        return false;
    }
    const auto positions = find(behind);
    const auto place = positions.empty() ? rules().size() : positions.back() + 1;
    const auto notice = noticeBeforeEditing(inserted, place);
    const auto name = stepName("Paste", inserted.front().rule.name, inserted.size());
    folded_.arrive(inserted);
    auto list = rules();
    list.insert(list.begin() + static_cast<Offset>(place), inserted.begin(), inserted.end());
    if (!apply(std::move(list), name)) {
        return false;
    }
    if (notice) {
        alert(*notice);
    }
    return true;
}

bool RuleListEditor::replaceAll(RuleList list, const std::string& stepName) {
    if (!whyNotEditable() && list == rules()) {
        return true;
    }
    const auto notice = noticeBeforeEditing(list);
    folded_.arrive(list);
    if (!isTakenByEngine(documentOf(list))) {
        return false;
    }
    noteStart();
    history_.noteReplacement(stepName, rules(), list);
    show(std::move(list));
    onReplaced_();
    if (notice) {
        alert(*notice);
    }
    return true;
}

void RuleListEditor::send(const UUID& id) {
    const auto position = find(id);
    if (!position || !isFixed(rules()[*position].rule.output)) {
        return;
    }
    onInstantMessageClick_(ruleFromElement(rules()[*position]).output.message);
}

void RuleListEditor::undo() {
    if (undoName()) {
        walk(&RuleListHistory::undo);
    }
}

void RuleListEditor::redo() {
    if (redoName()) {
        walk(&RuleListHistory::redo);
    }
}

void RuleListEditor::walk(RuleList (RuleListHistory::*go)(RuleList)) {
    auto history = history_;
    auto list = (history.*go)(rules());
    if (!isTakenByEngine(isBackAtRulesNotShown(history) ? start_->rules : documentOf(list))) {
        return;
    }
    history_ = std::move(history);
    if (isBackAtRulesNotShown(history_)) {
        bringBackRulesNotShown();
        onReplaced_();
        return;
    }
    const auto changed = changedRule(rules(), list);
    show(std::move(list));
    if (history_.hasWalkedReplacement()) {
        onReplaced_();
    }
    if (changed && onWalk_) {
        onWalk_(*changed);
    }
}

bool RuleListEditor::isBackAtRulesNotShown(const RuleListHistory& history) const {
    return start_ && history.isWhole() && !history.undoName();
}

void RuleListEditor::bringBackRulesNotShown() {
    changing_ = true;
    folded_.follow(rules(), {});
    model_->setNotEditable(start_->reason, start_->rules);
    changing_ = false;
}

}  // namespace quillo
