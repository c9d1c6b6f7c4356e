// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/TellingEvents.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <variant>

#include "midi/Status.hpp"
#include "rules/StatusV2.hpp"

namespace quillo {

namespace {

using Numbers = std::set<std::uint8_t>;
using Voice = VoiceCategoryTriggerVariantsV2;
using Transport = HostTransportTriggerVariantsV2;

/// The kinds of channel messages that rules can wait for.
constexpr std::array kinds{StatusV2::noteOff, StatusV2::noteOn, StatusV2::CC, StatusV2::programChange};
constexpr std::array systemMessages{midi::startCommand, midi::continueCommand, midi::stopCommand};
constexpr unsigned channelCount = 16;
constexpr unsigned byteCount = 256;
constexpr unsigned dataByteCount = 128;
constexpr unsigned middleC = 60;

/// The controllers that silence a channel, which can also be sent by copying the number of a note.
constexpr std::array<std::uint8_t, 6> silencingControllers{120, 123, 124, 125, 126, 127};

/// Collects the numbers that rules name.
class NamedNumbers {
public:
    explicit NamedNumbers(const std::vector<Rule>& rules) {
        first_.insert(silencingControllers.begin(), silencingControllers.end());
        for (const auto kind : kinds) {
            // Velocity 0 makes a note-off of a note-on that copies it.
            second_[kind].insert(0);
        }
        for (const auto& rule : rules) {
            addTrigger(rule.trigger);
            addOutput(rule.output.message);
        }
        addOther(first_);
        for (auto& [kind, numbers] : second_) {
            addOther(numbers);
        }
    }

    [[nodiscard]] const Numbers& first() const { return first_; }
    [[nodiscard]] const Numbers& second(StatusV2 kind) const { return second_.at(kind); }

private:
    void addTrigger(const RuleTriggerV2& trigger) {
        const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>();
        if (based == nullptr) {
            return;
        }
        const auto& message = based->trigger.variants;
        if (const auto* category = message.getIf<MessageBasedTriggerVariantsV2::VoiceCategory>()) {
            addVoice(category->voice.variants);
        }
    }

    void addVoice(const Voice& voice) {
        std::visit(Overloaded{
                       [this](const Voice::NoteOn& on) { add(first_, on.note); },
                       [this](const Voice::NoteOff& off) { add(first_, off.note); },
                       [this](const Voice::ControlChange& change) {
                           first_.insert(change.controller);
                           add(second_[StatusV2::CC], change.value);
                       },
                       [this](const Voice::ProgramChange& change) { add(first_, change.program); },
                   },
                   voice.variant());
    }

    /// Only a note or controller that is sent is compared with others: with those that copy theirs.
    void addOutput(const RuleOutputVariantsV2& output) {
        const auto* protocol = output.getIf<RuleOutputVariantsV2::Protocol>();
        const auto* exact = protocol == nullptr ? nullptr : protocol->byte1.getIf<GenericByteV2::Value>();
        if (exact != nullptr) {
            first_.insert(exact->value);
        }
    }

    static void add(Numbers& numbers, const TriggerValueV2& value) {
        if (const auto* exact = value.getIf<TriggerValueV2::Value>()) {
            numbers.insert(exact->value);
        }
    }

    /// One number that is not there yet stands for all the others: one that messages carry if there is one, from
    /// middle C upwards, which makes a good example.
    static void addOther(Numbers& numbers) {
        for (unsigned step = 0; step < byteCount; ++step) {
            const auto number = step < dataByteCount ? (middleC + step) % dataByteCount : step;
            if (numbers.insert(static_cast<std::uint8_t>(number)).second) {
                return;
            }
        }
    }

    Numbers first_;
    std::map<StatusV2, Numbers> second_;
};

void addMessages(std::vector<MIDIMessage>& messages, std::uint8_t status, const Numbers& first,
                 const Numbers& second) {
    for (const auto data1 : first) {
        for (const auto data2 : second) {
            messages.push_back({status, data1, data2});
        }
    }
}

}  // namespace

std::vector<MIDIMessage> tellingMessages(const std::vector<Rule>& rules) {
    const NamedNumbers numbers(rules);
    std::vector<MIDIMessage> messages;
    for (const auto kind : kinds) {
        for (unsigned channel = 0; channel < channelCount; ++channel) {
            const auto status = static_cast<std::uint8_t>(statusNibble(kind) | channel);
            addMessages(messages, status, numbers.first(), numbers.second(kind));
        }
    }
    for (const auto status : systemMessages) {
        addMessages(messages, status, numbers.first(), numbers.second(StatusV2::noteOn));
    }
    return messages;
}

bool canArrive(const AskedEvent& event) {
    const auto* message = std::get_if<MIDIMessage>(&event);
    return message == nullptr || std::ranges::none_of(message->bytes().subspan(1),
                                                      [](unsigned byte) { return byte >= dataByteCount; });
}

void tryTellingEvents(EngineProbe& probe, const std::function<void(const Trial&)>& watch) {
    for (const auto& message : tellingMessages(probe.rules())) {
        watch({message, probe.put(message.bytes())});
    }
    for (const auto change : {Transport::Start, Transport::Continue, Transport::Stop}) {
        watch({change, probe.put(change)});
    }
    watch({PluginLoad{}, probe.putLoading()});
}

}  // namespace quillo
