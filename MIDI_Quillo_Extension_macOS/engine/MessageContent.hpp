// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Generator.hpp"
#include "engine/MIDIMessage.hpp"
#include "rules/RuleOutputV2.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

struct MessageContentCases {
    /// Messages that do not depend on the trigger; shared, not copied, when emitted.
    struct Bytes {
        MessageList messages;
        bool operator==(const Bytes&) const = default;
    };
    /// Messages that take something from the trigger.
    struct Generator {
        quillo::Generator generate;
        bool operator==(const Generator&) const = default;
    };
};

/// A compiled output: what the render thread needs to send it.
struct MessageContent : MessageContentCases,
                        TaggedUnion<MessageContentCases::Bytes, MessageContentCases::Generator> {
    using TaggedUnion::TaggedUnion;
};

/// [any but render] Compiles one output: `Bytes` unless its channel or a data byte comes from the trigger. No
/// byte is checked or masked; a system-exclusive body gets its framing 0xF0 and 0xF7.
[[nodiscard]] MessageContent compile(const RuleOutputVariantsV2& output);

/// What a compiled output sends for this trigger.
[[nodiscard]] MessageList messagesOf(const MessageContent& content, const TriggerBytes& trigger);

}  // namespace quillo
