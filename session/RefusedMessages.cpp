// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/RefusedMessages.hpp"

#include <algorithm>

#include "engine/MessageContent.hpp"
#include "midi/Status.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

/// Whether it is the system exclusive that this rule sends.
bool isOf(const RefusedMessages::Message& message, const Rule& rule) {
    if (!rule.output.message.is<RuleOutputVariantsV2::SystemExclusive>()) {
        return false;
    }
    const auto sent = messagesOf(compile(rule.output.message), {});
    return message.matches(sent.messages().front().bytes());
}

/// A message that is sent by hand, or whose rule has been edited since, is nobody's.
std::string senderOf(const RefusedMessages::Message& message, const std::vector<Rule>& rules,
                     const RuleShelf& shelf) {
    const auto found = std::ranges::find_if(rules, [&](const Rule& rule) { return isOf(message, rule); });
    return found == rules.end()
               ? ""
               : " of " + ruleWords(rules, static_cast<std::size_t>(found - rules.begin()), shelf);
}

}  // namespace

bool RefusedMessages::Message::matches(std::span<const std::uint8_t> bytes) const {
    const auto kept = std::min(size, beginning.size());
    return bytes.size() == size && std::ranges::equal(bytes.first(kept), std::span(beginning).first(kept));
}

void RefusedMessages::add(std::span<const std::uint8_t> bytes, bool fitsNever) QUILLO_REALTIME {
    ++(fitsNever ? leftOut_ : refused_);
    const auto written = written_.load(std::memory_order_relaxed);
    if (written - taken_.load(std::memory_order_acquire) == room) {
        return;
    }
    auto& message = messages_[written % room];
    message = {};
    message.fitsNever = fitsNever;
    if (midi::isSystemExclusive(bytes)) {
        message.size = bytes.size();
        std::ranges::copy(bytes.first(std::min(bytes.size(), message.beginning.size())),
                          message.beginning.begin());
    }
    written_.store(written + 1, std::memory_order_release);
}

std::optional<RefusedMessages::Message> RefusedMessages::takeNext() {
    const auto taken = taken_.load(std::memory_order_relaxed);
    if (taken == written_.load(std::memory_order_acquire)) {
        return std::nullopt;
    }
    const auto message = messages_[taken % room];
    taken_.store(taken + 1, std::memory_order_release);
    return message;
}

std::string refusalText(const RefusedMessages::Message& message, const std::vector<Rule>& rules,
                        const RuleShelf& shelf) {
    if (message.fitsNever) {
        return "The SysEx" + senderOf(message, rules, shelf) + " is " + std::to_string(message.size) +
               " bytes long. The host takes no message of this length: it is left out each time, "
               "and everything else is sent. Send it in shorter messages, by several rules.";
    }
    if (message.size != 0) {
        return "The host had no room left in a block for the SysEx" + senderOf(message, rules, shelf) +
               " and for what was to follow it. Give it a delay, so that less is sent at one time.";
    }
    return "The host had no room left in a block: messages were lost. "
           "Fewer rules for one event, or delays, let less be sent at one time.";
}

}  // namespace quillo
