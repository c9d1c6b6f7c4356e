// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/UUID.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// An element of the editor's rule list: an entry under an identity that stays while the rule is moved and
/// edited.
struct RuleEntryIdentifiable {
    UUID id;
    RuleEntry rule;
    /// The message as it was loaded, where the entry cannot hold it exactly: it stays until it is edited.
    std::optional<RuleOutputVariantsV2> loadedMessage = std::nullopt;
    bool off = false;  ///< whether the rule is switched off: it keeps its place and does not run

    bool operator==(const RuleEntryIdentifiable&) const = default;
};

/// The element that stands for a rule, under a fresh identity. A rule that the editor cannot hold is a fatal
/// error: ask `whyNoEntry` first.
[[nodiscard]] RuleEntryIdentifiable elementFromRule(const Rule& rule);

/// The elements of a list, those of its rules that are switched off among them. A rule that the editor cannot
/// hold is a fatal error: ask `whyNotInEditor` first.
[[nodiscard]] std::vector<RuleEntryIdentifiable> elementsFrom(const std::vector<Rule>& rules,
                                                              const RuleShelf& shelf = {});

/// The first of these rules that the editor cannot hold, by number and name, and why: a sentence without its
/// full stop. Nothing when it can hold them all.
[[nodiscard]] std::optional<std::string> whyNotInEditor(const std::vector<Rule>& rules,
                                                        const RuleShelf& shelf);

/// The rule that an element stands for.
[[nodiscard]] Rule ruleFromElement(const RuleEntryIdentifiable& element);

/// Puts an entry into an element. A message that is changed thereby is the entry's from then on.
void editElement(RuleEntryIdentifiable& element, RuleEntry entry);

/// What a user must know before editing these elements, the first of which stands at position `first` of its
/// list: which of them, by number and name, hold a message that
/// the editor cannot hold exactly. Nothing when none does.
[[nodiscard]] std::optional<std::string> noticeBeforeEditing(
    const std::vector<RuleEntryIdentifiable>& elements, std::size_t first = 0);

}  // namespace quillo
