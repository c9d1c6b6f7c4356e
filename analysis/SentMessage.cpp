// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/SentMessage.hpp"

#include <functional>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"

namespace quillo {

namespace {

using Output = RuleOutputVariantsV2;
using MaybeByte = std::optional<std::uint8_t>;

/// The fixed value of a byte or channel; nothing where it is the trigger's.
template <class Field>
MaybeByte fixed(const Field& field) {
    const auto* exact = field.template getIf<typename Field::Value>();
    return exact == nullptr ? std::nullopt : std::optional(exact->value);
}

std::vector<SentMessage> sent(const Output::Protocol& output, SampleTime delay) {
    const auto* on = output.status.getIf<StatusByteV2::WithChannel>();
    const auto kind = on == nullptr ? output.status.getIf<StatusByteV2::JustStatus>()->status : on->status;
    const bool isLong = messageLength(statusNibble(kind)) == 3;
    if (isLong != output.byte2.has_value()) {
        return {};
    }
    return {{kind, on == nullptr ? MaybeByte(0) : fixed(on->channel), fixed(output.byte1),
             isLong ? fixed(*output.byte2) : MaybeByte(0), delay}};
}

std::vector<SentMessage> sent(const Output::ProgramChange& output, SampleTime delay) {
    const auto channel = fixed(output.channel);
    return {{StatusV2::CC, channel, MaybeByte(0), output.bank, delay},
            {StatusV2::programChange, channel, fixed(output.program), MaybeByte(0), delay}};
}

std::vector<SentMessage> sent(const Output::SystemExclusive& /*output*/, SampleTime /*delay*/) {
    return {};
}

bool hasValidBytes(const SentMessage& message) {
    return message.channel.value_or(0) <= midi::channelMask && midi::isData(message.data1.value_or(0)) &&
           midi::isData(message.data2.value_or(0));
}

}  // namespace

std::vector<SentMessage> sentBy(const RuleOutputV2& output) {
    auto messages =
        std::visit([&](const auto& kind) { return sent(kind, output.delay.ms); }, output.message.variant());
    std::erase_if(messages, std::not_fn(hasValidBytes));
    return messages;
}

}  // namespace quillo
