// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/RuleEntry.hpp"

namespace quillo {

/// Which fields of an output can be copied from the message that triggers it.
struct TriggerChoices {
    bool channel = false;             ///< the channel, of every output that has one
    bool noteAndVelocity = false;     ///< of a note output
    bool controllerAndValue = false;  ///< of a control change output
    bool program = false;             ///< of a program change output

    bool operator==(const TriggerChoices&) const = default;
};

/// What a trigger of this type has to offer.
[[nodiscard]] TriggerChoices triggerChoices(TriggerEntryType trigger);

/// Whether messages of this type are sent on a channel: all but system exclusive.
[[nodiscard]] bool hasChannel(OutputEntryType output);

/// What becomes of an entry when its trigger changes to `newType`: fields of its output that are copied from
/// the trigger, and that the new one cannot feed, fall back to their defaults. Fixed values are never
/// touched, nor is the trigger itself: storing the new type is the caller's.
[[nodiscard]] RuleEntry withUsableChoices(TriggerEntryType newType, RuleEntry entry);

/// Whether an output of the entry has fixed bytes, so that it can be sent by hand.
[[nodiscard]] bool isFixed(const RuleOutputEntry& output);

}  // namespace quillo
