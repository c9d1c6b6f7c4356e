// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/PlainWords.hpp"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "midi/Status.hpp"
#include "platform/HexText.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "words/MessageWords.hpp"

namespace quillo {

namespace {

std::string policy(PassThroughV2 passThrough) {
    switch (passThrough) {
    case PassThroughV2::PassThrough: return " (pass through)";
    case PassThroughV2::EatMatching: return " (consume matching)";
    case PassThroughV2::EatNonMatching: return " (consume non-matching)";
    }
    return {};
}

/// "value 60", or "any value".
std::string compared(const std::string& what, const TriggerValueV2& value) {
    const auto* exact = value.getIf<TriggerValueV2::Value>();
    return exact == nullptr ? "any " + what : what + " " + dataByteWords(exact->value);
}

/// "note-on 60 (C3)", or "any note-on".
std::string comparedNote(const std::string& what, const TriggerValueV2& note) {
    const auto* exact = note.getIf<TriggerValueV2::Value>();
    return exact == nullptr ? "any " + what : what + " " + noteWords(exact->value);
}

std::string voice(const VoiceCategoryTriggerVariantsV2& variants) {
    using Voice = VoiceCategoryTriggerVariantsV2;
    return std::visit(
        Overloaded{
            [](const Voice::NoteOn& trigger) { return comparedNote("note-on", trigger.note); },
            [](const Voice::NoteOff& trigger) { return comparedNote("note-off", trigger.note); },
            [](const Voice::ControlChange& trigger) {
                return "controller " + controllerWords(trigger.controller) + " with " +
                       compared("value", trigger.value);
            },
            [](const Voice::ProgramChange& trigger) { return compared("program", trigger.program); },
        },
        variants.variant());
}

std::string triggerChannel(const TriggerValueV2& channel) {
    const auto* exact = channel.getIf<TriggerValueV2::Value>();
    return exact == nullptr ? "any channel" : channelWords(exact->value);
}

std::string message(const MessageBasedTriggerVariantsV2& variants) {
    using Message = MessageBasedTriggerVariantsV2;
    return std::visit(Overloaded{
                          [](const Message::VoiceCategory& trigger) {
                              return voice(trigger.voice.variants) + " arrives on " +
                                     triggerChannel(trigger.voice.channel);
                          },
                          [](const Message::Start&) { return std::string("MIDI Start arrives"); },
                          [](const Message::Stop&) { return std::string("MIDI Stop arrives"); },
                          [](const Message::Continue&) { return std::string("MIDI Continue arrives"); },
                      },
                      variants.variant());
}

std::string hostTransport(HostTransportTriggerVariantsV2 variant) {
    switch (variant) {
    case HostTransportTriggerVariantsV2::Start: return "the host's transport starts";
    case HostTransportTriggerVariantsV2::Continue: return "the host's transport continues";
    case HostTransportTriggerVariantsV2::Stop: return "the host's transport stops";
    }
    return {};
}

/// What the two data bytes of a trigger are called.
using ByteNames = std::array<std::string_view, 2>;

ByteNames byteNames(const VoiceCategoryTriggerVariantsV2& variants) {
    using Voice = VoiceCategoryTriggerVariantsV2;
    return std::visit(
        Overloaded{
            [](const Voice::NoteOn&) { return ByteNames{"note", "velocity"}; },
            [](const Voice::NoteOff&) { return ByteNames{"note", "velocity"}; },
            [](const Voice::ControlChange&) { return ByteNames{"controller", "value"}; },
            [](const Voice::ProgramChange&) { return ByteNames{"program", "second data byte"}; },
        },
        variants.variant());
}

ByteNames byteNames(const RuleTriggerV2& trigger) {
    if (const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        const auto& variants = based->trigger.variants;
        if (const auto* category = variants.getIf<MessageBasedTriggerVariantsV2::VoiceCategory>()) {
            return byteNames(category->voice.variants);
        }
    }
    return {"first data byte", "second data byte"};
}

/// Describes one output, with the names that its trigger gives to what is copied.
class OutputWords {
public:
    explicit OutputWords(const RuleTriggerV2& trigger) : names_(byteNames(trigger)) {}

    [[nodiscard]] std::string operator()(const RuleOutputVariantsV2::Protocol& output) const {
        return std::visit(Overloaded{
                              [&](const StatusByteV2::JustStatus& status) {
                                  return protocol(status.status, output) + " on channel 1";
                              },
                              [&](const StatusByteV2::WithChannel& status) {
                                  return protocol(status.status, output) + " on " + channel(status.channel);
                              },
                          },
                          output.status.variant());
    }

    [[nodiscard]] std::string operator()(const RuleOutputVariantsV2::ProgramChange& output) const {
        return "bank " + dataByteWords(output.bank) + " and " + first("program", output.program) + " on " +
               channel(output.channel);
    }

    [[nodiscard]] std::string operator()(const RuleOutputVariantsV2::SystemExclusive& output) const {
        constexpr std::size_t shown = 16;
        const auto& body = output.body;
        std::string text = "system exclusive f0 ";
        for (const auto byte : std::span(body).first(std::min(shown, body.size()))) {
            text += hexText({&byte, 1}, HexCase::lower) + " ";
        }
        text += body.size() > shown ? "... f7" : "f7";
        return text + " (" + std::to_string(body.size() + 2) + " bytes)";
    }

private:
    [[nodiscard]] std::string protocol(StatusV2 status, const RuleOutputVariantsV2::Protocol& output) const {
        switch (status) {
        case StatusV2::noteOn: return note("note-on", output.byte1) + second("velocity", output.byte2);
        case StatusV2::noteOff: return note("note-off", output.byte1) + second("velocity", output.byte2);
        case StatusV2::CC: return controller(output.byte1) + second("value", output.byte2);
        case StatusV2::programChange: return first("program", output.byte1) + surplus(output.byte2);
        case StatusV2::channelPressure:
            return first("channel pressure", output.byte1) + surplus(output.byte2);
        case StatusV2::pitchWheel: return pitchWheel(output);
        }
        return {};
    }

    /// A position of 14 bits where both bytes are known, otherwise the two bytes.
    [[nodiscard]] std::string pitchWheel(const RuleOutputVariantsV2::Protocol& output) const {
        const auto* low = output.byte1.getIf<GenericByteV2::Value>();
        const auto* high = output.byte2 ? output.byte2->getIf<GenericByteV2::Value>() : nullptr;
        if (low != nullptr && high != nullptr && midi::isData(low->value) && midi::isData(high->value)) {
            return "pitch bend " + std::to_string(low->value + 128 * high->value);
        }
        return "pitch bend with " + first("low byte", output.byte1) +
               (output.byte2 ? " and " + named("high byte", *output.byte2, names_[1]) : " and no high byte");
    }

    /// "note-on 60 (C3)", or "note-on for the trigger's note".
    [[nodiscard]] std::string note(std::string_view what, const GenericByteV2& byte) const {
        const auto* exact = byte.getIf<GenericByteV2::Value>();
        const auto kind = std::string(what) + " ";
        return exact == nullptr ? kind + "for the trigger's " + std::string(names_[0])
                                : kind + noteWords(exact->value);
    }

    /// "controller 7 (Volume)", or "the trigger's controller".
    [[nodiscard]] std::string controller(const GenericByteV2& byte) const {
        const auto* exact = byte.getIf<GenericByteV2::Value>();
        return exact == nullptr ? first("controller", byte) : "controller " + controllerWords(exact->value);
    }

    [[nodiscard]] std::string first(std::string_view what, const GenericByteV2& byte) const {
        return named(what, byte, names_[0]);
    }

    [[nodiscard]] std::string second(std::string_view what, const std::optional<GenericByteV2>& byte) const {
        return byte ? " with " + named(what, *byte, names_[1]) : " without " + std::string(what);
    }

    /// A third byte of a message that has two.
    [[nodiscard]] std::string surplus(const std::optional<GenericByteV2>& byte) const {
        return byte ? " with " + named("surplus byte", *byte, names_[1]) : "";
    }

    /// "value 64"; "the trigger's value" where the trigger calls it the same, else "value from the trigger's
    /// velocity".
    static std::string named(std::string_view what, const GenericByteV2& byte, std::string_view triggerName) {
        if (const auto* exact = byte.getIf<GenericByteV2::Value>()) {
            return std::string(what) + " " + dataByteWords(exact->value);
        }
        const auto source = "the trigger's " + std::string(triggerName);
        return what == triggerName ? source : std::string(what) + " from " + source;
    }

    static std::string channel(const RuleOutputChannelV2& channel) {
        const auto* exact = channel.getIf<RuleOutputChannelV2::Value>();
        return exact == nullptr ? "the trigger's channel" : channelWords(exact->value);
    }

    ByteNames names_;
};

std::string delay(DelayV2 delay) {
    return delay.ms == 0 ? " at once" : " after " + numberWords(delay.ms, delay.ms > 0) + " ms";
}

}  // namespace

std::string inPlainWords(const RuleTriggerV2& trigger) {
    return std::visit(
        Overloaded{
            [](const RuleTriggerV2::MessageBased& based) {
                return "when " + message(based.trigger.variants) + policy(based.trigger.passTrough);
            },
            [](const RuleTriggerV2::HostTransport& host) {
                return "when " + hostTransport(host.trigger.variants) + policy(host.trigger.passThrough);
            },
            [](const RuleTriggerV2::OnLoad&) { return std::string("when the plug-in is loaded"); },
        },
        trigger.variant());
}

std::string inPlainWords(const RuleOutputV2& output, const RuleTriggerV2& trigger) {
    return "send " + std::visit(OutputWords(trigger), output.message.variant()) + delay(output.delay);
}

std::string inPlainWords(const Rule& rule) {
    return inQuotes(rule.name) + ": " + inPlainWords(rule.trigger) + ", " +
           inPlainWords(rule.output, rule.trigger) + ".";
}

std::string countInPlainWords(const PluginData& data) {
    return countWords(data.rules.size(), "rule") +
           (data.shelf.empty() ? "" : ", " + std::to_string(data.shelf.size()) + " switched off");
}

}  // namespace quillo
