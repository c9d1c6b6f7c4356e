// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleTable.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

namespace quillo {

namespace {

using Ordinals = std::vector<RuleOrdinal>;

/// A message-based rule.
struct Entry {
    RuleOrdinal ordinal;
    TriggerPattern pattern;
};
using Entries = std::vector<Entry>;

Entries merged(const Entries& some, const Entries& others) {
    Entries all;
    all.reserve(some.size() + others.size());
    std::ranges::merge(some, others, std::back_inserter(all), {}, &Entry::ordinal, &Entry::ordinal);
    return all;
}

/// The rules of the entries that ask for this byte at `position`.
class EntriesByByte {
public:
    EntriesByByte(const Entries& entries, unsigned position) {
        for (const auto& entry : entries) {
            const auto byte = entry.pattern.byte(position);
            (byte ? exact[*byte] : any).push_back(entry);
        }
    }

    Entries any;
    std::array<Entries, 256> exact;
};

std::uint32_t lengthOf(const Ordinals& ordinals) {
    return static_cast<std::uint32_t>(ordinals.size());
}

Ordinals ordinalsOf(const Entries& entries) {
    Ordinals ordinals(entries.size());
    std::ranges::transform(entries, ordinals.begin(), &Entry::ordinal);
    return ordinals;
}

bool asksForByte(const Entries& entries, unsigned position) {
    return std::ranges::any_of(entries,
                               [=](const Entry& entry) { return entry.pattern.byte(position).has_value(); });
}

}  // namespace

/// Fills a table. Every list of rules is in the order of the chain.
class RuleTableBuilder {
public:
    RuleTableBuilder(RuleTable& table, std::span<const MIDIRuleInternal> rules);

    void addMessages();
    void addHostEvents();

private:
    using Cell = RuleTable::Cell;

    /// What the outcomes of a row have in common: the rules that fire whatever its byte is.
    struct Common {
        std::uint32_t begin;      ///< of the rules among the table's ordinals
        std::uint32_t end;        ///< the same, exclusive
        RuleOrdinal eater;        ///< the first of them that consumes what it matches
        Ordinals eatNonMatching;  ///< of the others, the first that consume what they do not match
    };

    [[nodiscard]] Cell addRow(const Entries& entries, unsigned position);
    [[nodiscard]] Cell rowOfValues(const Entries& entries);
    [[nodiscard]] Common addCommon(const Ordinals& ordinals, std::size_t mostOwn);
    [[nodiscard]] Cell addOutcome(const Common& common, const Ordinals& own);
    void addRun(std::uint32_t begin, std::uint32_t end);
    [[nodiscard]] std::uint32_t behind(std::uint32_t begin, std::uint32_t end, RuleOrdinal limit) const;
    [[nodiscard]] RuleOrdinal consumer(const Common& common, const Ordinals& own) const;
    [[nodiscard]] RuleOrdinal firstEater(const Ordinals& ordinals) const;

    RuleTable& table_;
    std::span<const MIDIRuleInternal> rules_;
    Ordinals eatNonMatching_;
    std::map<Ordinals, Cell> rowsOfValues_;  ///< by the rules that they are of
};

RuleTable::RuleTable(std::span<const MIDIRuleInternal> rules) {
    RuleTableBuilder builder(*this, rules);
    builder.addMessages();
    builder.addHostEvents();
}

std::size_t RuleTable::bytes() const {
    return sizeof *this + sizeof(Cell) * cells_.size() + sizeof(Run) * runs_.size() +
           sizeof(RuleOrdinal) * ordinals_.size();
}

RuleTableBuilder::RuleTableBuilder(RuleTable& table, std::span<const MIDIRuleInternal> rules)
    : table_(table), rules_(rules) {
    for (RuleOrdinal ordinal = 0; ordinal < rules.size(); ++ordinal) {
        if (rules[ordinal].passThrough == PassThroughV2::EatNonMatching) {
            eatNonMatching_.push_back(ordinal);
        }
    }
}

/// A status byte without rules of its own has the row of those that ask for its kind on any channel.
void RuleTableBuilder::addMessages() {
    using Part = RuleInternalPartVariants::WithMessageBasedTrigger;
    std::array<Entries, 256> ofStatus;
    std::array<Entries, 16> ofKind;
    for (RuleOrdinal ordinal = 0; ordinal < rules_.size(); ++ordinal) {
        const auto* message = rules_[ordinal].variants.getIf<Part>();
        const Entry entry{ordinal,
                          message != nullptr ? TriggerPattern(message->part.variants) : TriggerPattern()};
        if (message == nullptr || entry.pattern.matchesNothing()) {
            continue;
        }
        const auto exact = entry.pattern.byte(TriggerPattern::status);
        (exact ? ofStatus[*exact] : ofKind[entry.pattern.kind()]).push_back(entry);
    }
    const auto emptyRow = addRow({}, TriggerPattern::data1);
    for (std::size_t kind = 0; kind < ofKind.size(); ++kind) {
        const auto row = ofKind[kind].empty() ? emptyRow : addRow(ofKind[kind], TriggerPattern::data1);
        for (std::size_t byte = 16 * kind; byte < 16 * (kind + 1); ++byte) {
            table_.rows_[byte] = ofStatus[byte].empty()
                                     ? row
                                     : addRow(merged(ofStatus[byte], ofKind[kind]), TriggerPattern::data1);
        }
    }
}

void RuleTableBuilder::addHostEvents() {
    using Part = RuleInternalPartVariants::WithHostBasedTrigger;
    std::array<Ordinals, 3> ofTrigger;
    for (RuleOrdinal ordinal = 0; ordinal < rules_.size(); ++ordinal) {
        if (const auto* host = rules_[ordinal].variants.getIf<Part>()) {
            ofTrigger[static_cast<std::size_t>(host->part.trigger)].push_back(ordinal);
        }
    }
    for (std::size_t trigger = 0; trigger < ofTrigger.size(); ++trigger) {
        table_.hostOutcomes_[trigger] = addOutcome(addCommon(ofTrigger[trigger], 0), {});
    }
}

/// The index of the first cell. Rules that ask for a second byte all ask for a first one: so a row of second
/// bytes takes over nothing from the row that leads to it.
RuleTable::Cell RuleTableBuilder::addRow(const Entries& entries, unsigned position) {
    const EntriesByByte byByte(entries, position);
    const auto common = addCommon(ordinalsOf(byByte.any), entries.size());
    const auto row = static_cast<Cell>(table_.cells_.size());
    table_.cells_.resize(row + RuleTable::rowLength, addOutcome(common, {}));
    for (std::size_t byte = 0; byte < RuleTable::rowLength; ++byte) {
        if (const auto& own = byByte.exact[byte]; !own.empty()) {
            const auto cell = position == TriggerPattern::data1 && asksForByte(own, TriggerPattern::data2)
                                  ? RuleTable::leadsToRow | rowOfValues(own)
                                  : addOutcome(common, ordinalsOf(own));
            table_.cells_[row + byte] = cell;
        }
    }
    return row;
}

/// Channels share the row of a controller for which none of them has rules of its own.
RuleTable::Cell RuleTableBuilder::rowOfValues(const Entries& entries) {
    const auto [row, isNew] = rowsOfValues_.try_emplace(ordinalsOf(entries));
    if (isNew) {
        row->second = addRow(entries, TriggerPattern::data2);
    }
    return row->second;
}

/// Of the rules that consume what they do not match, one more than an outcome can fire by itself is enough.
RuleTableBuilder::Common RuleTableBuilder::addCommon(const Ordinals& ordinals, std::size_t mostOwn) {
    const auto begin = lengthOf(table_.ordinals_);
    table_.ordinals_.insert(table_.ordinals_.end(), ordinals.begin(), ordinals.end());
    Ordinals others;
    for (auto ordinal = eatNonMatching_.begin(); ordinal != eatNonMatching_.end() && others.size() <= mostOwn;
         ++ordinal) {
        if (!std::ranges::binary_search(ordinals, *ordinal)) {
            others.push_back(*ordinal);
        }
    }
    return {begin, lengthOf(table_.ordinals_), firstEater(ordinals), std::move(others)};
}

/// Adds the rules that fire, up to the consumer: the row's in common, with `own` in their places between
/// them.
RuleTable::Cell RuleTableBuilder::addOutcome(const Common& common, const Ordinals& own) {
    auto& ordinals = table_.ordinals_;
    auto& runs = table_.runs_;
    const auto first = runs.size();
    const auto last = consumer(common, own);
    auto next = common.begin;
    auto ownBegin = lengthOf(ordinals);
    for (const auto ordinal : std::span(own.begin(), std::ranges::upper_bound(own, last))) {
        if (const auto upTo = behind(next, common.end, ordinal); upTo != next) {
            addRun(ownBegin, lengthOf(ordinals));
            addRun(std::exchange(next, upTo), upTo);
            ownBegin = lengthOf(ordinals);
        }
        ordinals.push_back(ordinal);
    }
    addRun(ownBegin, lengthOf(ordinals));
    addRun(next, behind(next, common.end, last));
    if (runs.size() == first) {
        runs.emplace_back();
    }
    runs.back().consumer = last;
    runs.back().isLast = true;
    return static_cast<Cell>(first);
}

void RuleTableBuilder::addRun(std::uint32_t begin, std::uint32_t end) {
    if (begin != end) {
        table_.runs_.push_back({begin, end, noRule, false});
    }
}

/// Where, among the table's ordinals from `begin` to `end`, those end that do not come after `limit`.
std::uint32_t RuleTableBuilder::behind(std::uint32_t begin, std::uint32_t end, RuleOrdinal limit) const {
    const auto some = std::span(table_.ordinals_).subspan(begin, end - begin);
    return begin + static_cast<std::uint32_t>(std::ranges::upper_bound(some, limit) - some.begin());
}

/// The first rule whose policy ends the chain when these rules match and no others.
RuleOrdinal RuleTableBuilder::consumer(const Common& common, const Ordinals& own) const {
    const auto others = std::ranges::find_if(common.eatNonMatching, [&](RuleOrdinal ordinal) {
        return !std::ranges::binary_search(own, ordinal);
    });
    const auto stop = others != common.eatNonMatching.end() ? *others : noRule;
    return std::min({common.eater, firstEater(own), stop});
}

RuleOrdinal RuleTableBuilder::firstEater(const Ordinals& ordinals) const {
    const auto eater = std::ranges::find_if(ordinals, [this](RuleOrdinal ordinal) {
        return rules_[ordinal].passThrough == PassThroughV2::EatMatching;
    });
    return eater != ordinals.end() ? *eater : noRule;
}

}  // namespace quillo
