// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Generator.hpp"

#include "midi/Status.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t bankSelectController = 0;

std::uint8_t combined(std::uint8_t nibble, std::uint8_t channel) QUILLO_REALTIME {
    return static_cast<std::uint8_t>(nibble | channel);
}

}  // namespace

Generator::Source Generator::source(const GenericByteV2& byte) {
    const auto* value = byte.getIf<GenericByteV2::Value>();
    return value != nullptr ? Source{false, value->value} : Source{true, 0};
}

Generator::Source Generator::source(const RuleOutputChannelV2& channel) {
    const auto* value = channel.getIf<RuleOutputChannelV2::Value>();
    return value != nullptr ? Source{false, value->value} : Source{true, 0};
}

Generator::Generator(const RuleOutputVariantsV2::Protocol& output) noexcept
    : shape_(output.byte2 ? Shape::threeBytes : Shape::twoBytes), byte1_(source(output.byte1)) {
    if (const auto* plain = output.status.getIf<StatusByteV2::JustStatus>()) {
        status_ = statusNibble(plain->status);
    } else if (const auto* onChannel = output.status.getIf<StatusByteV2::WithChannel>()) {
        status_ = statusNibble(onChannel->status);
        channel_ = source(onChannel->channel);
    }
    if (output.byte2) {
        byte2_ = source(*output.byte2);
    }
}

Generator::Generator(const RuleOutputVariantsV2::ProgramChange& output) noexcept
    : shape_(Shape::bankAndProgram),
      bank_(output.bank),
      channel_(source(output.channel)),
      byte1_(source(output.program)) {}

MessageList Generator::operator()(const TriggerBytes& trigger) const QUILLO_REALTIME {
    const auto channel = channel_.choose(trigger.status & midi::channelMask);
    const auto byte1 = byte1_.choose(trigger.data1);
    if (shape_ != Shape::bankAndProgram) {
        const auto byte2 = byte2_.choose(trigger.data2);
        const std::size_t length = shape_ == Shape::twoBytes ? 2 : 3;
        return MessageList(MIDIMessage({combined(status_, channel), byte1, byte2}, length));
    }
    return MessageList({combined(statusNibble(StatusV2::CC), channel), bankSelectController, bank_},
                       {combined(statusNibble(StatusV2::programChange), channel), byte1});
}

}  // namespace quillo
