// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Finders.hpp"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "analysis/AskedEvent.hpp"
#include "engine/MessageContent.hpp"
#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "platform/HexText.hpp"

namespace quillo {

namespace {

using Kind = Advice::Kind;

constexpr std::size_t frameSize = 2;
/// What the buffer of events takes that the VST3 plug-in hands to its host.
constexpr std::size_t longestInVST3 = 65529;

bool isComplete(const MIDIMessage& message) {
    return midi::isSystemExclusive(message.bytes()) || isCompleteShortMessage(message.bytes());
}

/// A system-exclusive body, as it was typed in.
struct TypedBody {
    explicit TypedBody(std::span<const std::uint8_t> body)
        : hasStart(midi::isSystemExclusive(body)),
          hasEnd(!body.empty() && body.back() == midi::endOfExclusive),
          inner(body.subspan(hasStart ? 1 : 0)) {
        inner = inner.first(inner.size() - (hasEnd ? 1 : 0));
    }

    bool hasStart;
    bool hasEnd;
    std::span<const std::uint8_t> inner;  ///< without the frame
};

std::string frameWords(const TypedBody& typed) {
    if (typed.hasStart && typed.hasEnd) {
        return "F0 and F7";
    }
    return typed.hasStart ? "F0" : "F7";
}

/// What goes out.
std::string sentBytes(const RuleOutputVariantsV2& output) {
    const auto content = compile(output);
    return shownBytes(content.getIf<MessageContent::Bytes>()->messages.messages().front());
}

Advice typedFrame(std::size_t rule, const TypedBody& typed, const RuleOutputVariantsV2& output) {
    const auto inner = MIDIMessage::copyOf(typed.inner);
    return {rule, Kind::badSystemExclusive,
            "sends " + frameWords(typed) +
                " twice: the frame of system exclusive is added to what is typed in (" + sentBytes(output) +
                ")",
            typed.inner.empty() ? "Leave " + frameWords(typed) + " out."
                                : "Type only what stands between them: " + shownBytes(inner) + "."};
}

/// Of a message that would be complete if it were no greater: the first number above 127.
std::optional<std::uint8_t> tooGreat(const MIDIMessage& message) {
    const auto bytes = message.bytes();
    if (bytes.empty() || messageLength(bytes[0]) != bytes.size()) {
        return std::nullopt;
    }
    const auto data = bytes.subspan(1);
    const auto found = std::ranges::find_if_not(data, midi::isData);
    return found == data.end() ? std::nullopt : std::optional(*found);
}

/// Whether a message is complete does not depend on what is copied: no message that comes has a number above
/// 127.
std::optional<MIDIMessage> incompleteMessage(const RuleOutputVariantsV2& output,
                                             const TriggerBytes& trigger) {
    const auto list = messagesOf(compile(output), trigger);
    const auto wrong = std::ranges::find_if_not(list.messages(), isComplete);
    return wrong == list.messages().end() ? std::nullopt : std::optional(*wrong);
}

}  // namespace

std::optional<Advice> findBadSystemExclusive(const AdvisedRules& list, std::size_t rule) {
    const auto& output = list.rules()[rule].output.message;
    const auto* sysEx = output.getIf<RuleOutputVariantsV2::SystemExclusive>();
    if (sysEx == nullptr) {
        return std::nullopt;
    }
    const TypedBody typed(sysEx->body);
    const auto wrong = std::ranges::find_if_not(typed.inner, midi::isData);
    if (wrong != typed.inner.end()) {
        return Advice{
            rule, Kind::badSystemExclusive,
            "has " + hexText({&*wrong, 1}, HexCase::lower) +
                " among its system-exclusive bytes, where MIDI allows 00 to 7f",
            "Give each message a rule of its own, without F0 and F7, and leave out what is above 7f."};
    }
    if (typed.hasStart || typed.hasEnd) {
        return typedFrame(rule, typed, output);
    }
    return std::nullopt;
}

std::optional<Advice> findTooLongForVST3(const AdvisedRules& list, std::size_t rule) {
    const auto& output = list.rules()[rule].output.message;
    const auto* sysEx = output.getIf<RuleOutputVariantsV2::SystemExclusive>();
    const auto length = sysEx == nullptr ? 0 : sysEx->body.size() + frameSize;
    if (length <= longestInVST3) {
        return std::nullopt;
    }
    return Advice{rule, Kind::tooLongForVST3,
                  "sends " + std::to_string(length) + " bytes of system exclusive; a VST3 host can take " +
                      std::to_string(longestInVST3),
                  "Split it into several messages, or use another plug-in format."};
}

std::optional<Advice> findIncompleteOutput(const AdvisedRules& list, std::size_t rule) {
    const auto incomplete = incompleteMessage(list.rules()[rule].output.message,
                                              list.reach().example(rule).value_or(Event{}).bytes());
    if (!incomplete) {
        return std::nullopt;
    }
    if (const auto number = tooGreat(*incomplete)) {
        return Advice{rule, Kind::incompleteOutput,
                      "sends " + std::to_string(*number) + " where MIDI allows 0 to 127 (" +
                          shownBytes(*incomplete) + ")",
                      "Give it a number from 0 to 127."};
    }
    return Advice{rule, Kind::incompleteOutput,
                  "sends an incomplete or damaged MIDI message (" + shownBytes(*incomplete) +
                      "): hosts may drop or change it, and in a VST3 host it cannot be sent as it is",
                  "Make the output again in the editor, which sends complete messages only."};
}

}  // namespace quillo
