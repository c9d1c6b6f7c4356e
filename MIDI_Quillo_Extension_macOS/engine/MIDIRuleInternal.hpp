// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "engine/MIDIMessage.hpp"
#include "engine/MessageContent.hpp"
#include "engine/SampleTime.hpp"
#include "rules/RuleTriggerV2.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

/// A compiled on-load rule.
struct MIDIOnLoadRuleInternal {
    MessageList output;
    std::uint32_t place = 0;  ///< in the list
    SampleTime delay = 0;     ///< samples

    bool operator==(const MIDIOnLoadRuleInternal&) const = default;
};

/// What is special to a rule fired by an incoming message.
struct RulePartWithMessageBasedTrigger {
    MessageContent output;
    MessageBasedTriggerVariantsV2 variants;

    bool operator==(const RulePartWithMessageBasedTrigger&) const = default;
};

/// What is special to a rule fired by the host's transport: its output depends on no trigger message.
struct RulePartWithHostBasedTrigger {
    MessageList output;
    HostTransportTriggerVariantsV2 trigger = HostTransportTriggerVariantsV2::Start;

    bool operator==(const RulePartWithHostBasedTrigger&) const = default;
};

struct RuleInternalPartVariantsCases {
    struct WithMessageBasedTrigger {
        RulePartWithMessageBasedTrigger part;
        bool operator==(const WithMessageBasedTrigger&) const = default;
    };
    struct WithHostBasedTrigger {
        RulePartWithHostBasedTrigger part;
        bool operator==(const WithHostBasedTrigger&) const = default;
    };
};

struct RuleInternalPartVariants : RuleInternalPartVariantsCases,
                                  TaggedUnion<RuleInternalPartVariantsCases::WithMessageBasedTrigger,
                                              RuleInternalPartVariantsCases::WithHostBasedTrigger> {
    using TaggedUnion::TaggedUnion;
};

/// A compiled rule of the chain that incoming messages and host transport events run through.
struct MIDIRuleInternal {
    RuleInternalPartVariants variants;
    PassThroughV2 passThrough = PassThroughV2::PassThrough;
    std::uint32_t place = 0;  ///< in the list
    SampleTime delay = 0;     ///< samples

    bool operator==(const MIDIRuleInternal&) const = default;
};

}  // namespace quillo
