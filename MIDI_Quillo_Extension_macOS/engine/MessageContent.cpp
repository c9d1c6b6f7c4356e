// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MessageContent.hpp"

#include <variant>
#include <vector>

#include "midi/Status.hpp"

namespace quillo {

namespace {

bool needsTrigger(const GenericByteV2& byte) {
    return byte.isCopied();
}

bool needsTrigger(const RuleOutputChannelV2& channel) {
    return channel.is<RuleOutputChannelV2::TriggerChannel>();
}

bool needsTrigger(const RuleOutputVariantsV2::Protocol& output) {
    const auto* onChannel = output.status.getIf<StatusByteV2::WithChannel>();
    return (onChannel != nullptr && needsTrigger(onChannel->channel)) || needsTrigger(output.byte1) ||
           (output.byte2 && needsTrigger(*output.byte2));
}

bool needsTrigger(const RuleOutputVariantsV2::ProgramChange& output) {
    return needsTrigger(output.channel) || needsTrigger(output.program);
}

/// Fixed outputs are built by the same generator, once, from a trigger that they do not look at.
template <class Output>
MessageContent compileWithTrigger(const Output& output) {
    const Generator generator(output);
    if (needsTrigger(output)) {
        return MessageContent::Generator{generator};
    }
    return MessageContent::Bytes{generator(TriggerBytes{})};
}

MessageContent compileSystemExclusive(const std::vector<std::uint8_t>& body) {
    std::vector<std::uint8_t> framed;
    framed.reserve(body.size() + 2);
    framed.push_back(midi::systemExclusive);
    framed.insert(framed.end(), body.begin(), body.end());
    framed.push_back(midi::endOfExclusive);
    return MessageContent::Bytes{MessageList(MIDIMessage::copyOf(framed))};
}

}  // namespace

MessageContent compile(const RuleOutputVariantsV2& output) {
    return std::visit(
        Overloaded{
            [](const RuleOutputVariantsV2::Protocol& protocol) { return compileWithTrigger(protocol); },
            [](const RuleOutputVariantsV2::ProgramChange& program) { return compileWithTrigger(program); },
            [](const RuleOutputVariantsV2::SystemExclusive& sysEx) {
                return compileSystemExclusive(sysEx.body);
            },
        },
        output.variant());
}

MessageList messagesOf(const MessageContent& content, const TriggerBytes& trigger) {
    if (const auto* fixed = content.getIf<MessageContent::Bytes>()) {
        return fixed->messages;
    }
    return content.getIf<MessageContent::Generator>()->generate(trigger);
}

}  // namespace quillo
