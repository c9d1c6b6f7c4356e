// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleProcessor.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "engine/RuleChain.hpp"

namespace quillo {

namespace {

bool hasRuleForHostTransport(const CompiledRules& rules) {
    using Trigger = HostTransportTriggerVariantsV2;
    return std::ranges::any_of(std::array{Trigger::Start, Trigger::Continue, Trigger::Stop},
                               [&](Trigger trigger) { return RuleChain(rules, trigger).next() != nullptr; });
}

}  // namespace

RuleProcessor::RuleProcessor()
    : dispatchQueue("rule-processore-queue"),
      compiled_(std::make_shared<const CompiledRules>(compileRules({}, defaultSampleRate))) {}

std::vector<Rule> RuleProcessor::rules() {
    return compiledRules()->rules;
}

std::shared_ptr<const CompiledRules> RuleProcessor::compiledRules() {
    return dispatchQueue.sync([this] { return compiled_; });
}

std::shared_ptr<const CompiledRules> RuleProcessor::setRules(std::vector<Rule> rules,
                                                             const RuleShelf& shelf) {
    std::shared_ptr<const CompiledRules> next =
        std::make_shared<const CompiledRules>(compileRules(std::move(rules), sampleRate.load(), shelf));
    const bool hearsHostTransport = hasRuleForHostTransport(*next);
    dispatchQueue.barrierSync([&] {
        compiled_.swap(next);
        hearsHostTransport_ = hearsHostTransport;
    });
    return next;
}

void RuleProcessor::send(const RuleOutputVariantsV2& output) {
    const auto list = compileFixed(output, "a message sent by hand");
    std::vector<MIDIMessage> room;
    while (!tryAppendInstantMessages(list.messages(), room)) {
        room.reserve(2 * (pendingInstantMessages() + list.messages().size()));
    }
}

/// Appends inside a barrier, into storage that was made outside of it: false when `room` is too small. What
/// the waiting messages leave behind is freed with `room`.
bool RuleProcessor::tryAppendInstantMessages(std::span<const MIDIMessage> messages,
                                             std::vector<MIDIMessage>& room) {
    return dispatchQueue.barrierSync([&] {
        const auto needed = instantMessages_.size() + messages.size();
        if (instantMessages_.capacity() < needed) {
            if (room.capacity() < needed) {
                return false;
            }
            std::ranges::move(instantMessages_, std::back_inserter(room));
            instantMessages_.swap(room);
        }
        std::ranges::copy(messages, std::back_inserter(instantMessages_));
        return true;
    });
}

std::size_t RuleProcessor::pendingInstantMessages() {
    return dispatchQueue.barrierSync([this] { return instantMessages_.size(); });
}

std::size_t RuleProcessor::pendingDelayedMessages() {
    return dispatchQueue.barrierSync([this] { return delayedMessages_.size(); });
}

std::uint64_t RuleProcessor::lostDelayedMessages() {
    return dispatchQueue.barrierSync([this] { return delayedMessages_.lost(); });
}

std::optional<SampleTime> RuleProcessor::nextDelayedMessage() {
    return dispatchQueue.barrierSync([this] {
        const auto* earliest = delayedMessages_.peek();
        return earliest != nullptr ? std::optional(earliest->time) : std::nullopt;
    });
}

}  // namespace quillo
