// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Finders.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

#include "words/MessageWords.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Kind = Advice::Kind;
using Controllers = std::span<const std::uint8_t>;

constexpr std::uint8_t dataEntry = 6;
constexpr std::uint8_t fineDataEntry = 38;
constexpr std::uint8_t firstFine = 32;  // the fine half of controller 0

/// Whether what one rule sends for an event leaves before what the other sends for it.
bool isBefore(const AdvisedRules& list, std::size_t one, std::size_t other) {
    const auto delayOf = [&](std::size_t rule) { return list.rules()[rule].output.delay.ms; };
    return std::pair(delayOf(one), one) < std::pair(delayOf(other), other);
}

/// The controller that the rule waits for and takes from others.
std::optional<std::uint8_t> swallowedController(const AdvisedRules& list, std::size_t rule) {
    const auto& box = list.reach().box(rule);
    const bool isSwallowing = policyOf(list.rules()[rule].trigger) == PassThroughV2::EatMatching;
    return isSwallowing && !box.isEmpty() && box.kind() == EventKind::controlChange ? box.number()
                                                                                    : std::nullopt;
}

/// Of some controllers the one that passes on a channel on which the rule fires.
std::optional<std::uint8_t> passing(const AdvisedRules& list, std::size_t rule, Controllers controllers) {
    constexpr std::uint8_t value = 64;
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        const bool isRules = (list.reach().box(rule).channels() >> channel & 1U) != 0;
        for (const auto controller : isRules ? controllers : Controllers()) {
            if (!list.reach().consumer({EventKind::controlChange, channel, controller, value})) {
                return controller;
            }
        }
    }
    return std::nullopt;
}

/// The two halves of a 14-bit controller, but for those of Data Entry.
bool isHalf(std::uint8_t controller) {
    return controller < 2 * firstFine && controller % firstFine != dataEntry;
}

std::optional<Advice> tornFrom(const AdvisedRules& list, std::size_t rule, std::uint8_t controller,
                               Controllers partners) {
    const auto partner = passing(list, rule, partners);
    if (!partner) {
        return std::nullopt;
    }
    return Advice{rule, Kind::tearsParameter,
                  "swallows controller " + controllerWords(controller) + ", while controller " +
                      controllerWords(*partner) +
                      " passes: an RPN or NRPN, which is sent with both, comes apart and may set "
                      "something else",
                  "Let controllers 6, 38 and 98 to 101 all pass, or consume all of them."};
}

}  // namespace

std::optional<Advice> findSendsTwice(const AdvisedRules& list, std::size_t rule) {
    const auto twin = list.twin(rule);
    if (!twin) {
        return std::nullopt;
    }
    return Advice{rule, Kind::sendsTwice,
                  "does the same as " + ruleWords(list.rules(), *twin) + ": all that it sends goes out twice",
                  "Remove one of the two."};
}

std::optional<Advice> findBankTooLate(const AdvisedRules& list, std::size_t rule) {
    for (const auto& message : sentBy(list.rules()[rule].output)) {
        if (!message.isController(0) && !message.isController(firstFine)) {
            continue;
        }
        const auto isItsProgram = [&](const AdvisedRules::Sender& sender) {
            return sender.message.channel == message.channel && list.fireTogether(sender.rule, rule);
        };
        const auto& programs = list.programs();
        const auto found = std::ranges::find_if(programs, isItsProgram);
        const bool isLate = found != programs.end() && isBefore(list, found->rule, rule);
        if (isLate && !std::ranges::any_of(found, programs.end(), [&](const auto& sender) {
                return (sender.rule == rule || isBefore(list, rule, sender.rule)) && isItsProgram(sender);
            })) {
            return Advice{rule, Kind::bankTooLate,
                          "selects a bank (controller " + std::to_string(*message.data1) + ") after " +
                              ruleWords(list.rules(), found->rule) +
                              " has sent the program: a bank counts for the next program only, so that the "
                              "sound is one of another bank",
                          "Let it come before the program, with no longer a delay."};
        }
    }
    return std::nullopt;
}

std::optional<Advice> findProgramUndone(const AdvisedRules& list, std::size_t rule) {
    const auto messages = sentBy(list.rules()[rule].output);
    if (std::ranges::find(messages, StatusV2::programChange, &SentMessage::kind) == messages.end()) {
        return std::nullopt;
    }
    const auto reset = std::ranges::find_if(list.resets(), [&](std::size_t other) {
        return isBefore(list, rule, other) && list.fireTogether(rule, other);
    });
    if (reset == list.resets().end()) {
        return std::nullopt;
    }
    return Advice{rule, Kind::programUndone,
                  "sends a program before the reset of " + ruleWords(list.rules(), *reset) +
                      ", which undoes it",
                  "Give it a longer delay than the reset has, by 200 ms or more: devices take their time."};
}

/// Settings that a song begins with are wanted in its middle, too; a count-in or a crash is not.
std::optional<Advice> findStartOnly(const AdvisedRules& list, std::size_t rule) {
    const auto kind = list.reach().box(rule).kind();
    const bool isHost = kind == EventKind::hostStart && !list.waitsFor(EventKind::hostContinue);
    const bool isMIDI = kind == EventKind::start && !list.waitsFor(EventKind::continues);
    const auto messages = sentBy(list.rules()[rule].output);
    const bool isSetting = std::ranges::none_of(messages, [](const SentMessage& message) {
        return message.kind == StatusV2::noteOn || message.kind == StatusV2::noteOff ||
               message.kind == StatusV2::pitchWheel;
    });
    if (list.reach().box(rule).isEmpty() || (!isHost && !isMIDI) || !isSetting) {
        return std::nullopt;
    }
    return Advice{rule, Kind::startOnly,
                  "fires only when the song is played from its beginning; from anywhere else, " +
                      std::string(isHost ? "the host reports Continue" : "MIDI Continue comes") +
                      ", which no rule waits for",
                  "Duplicate it and let the copy wait for Continue."};
}

std::optional<Advice> findTearsFineValue(const AdvisedRules& list, std::size_t rule) {
    const auto controller = swallowedController(list, rule);
    if (!controller || !isHalf(*controller)) {
        return std::nullopt;
    }
    const auto fine = static_cast<std::uint8_t>(*controller | firstFine);
    const auto partner = static_cast<std::uint8_t>(*controller ^ firstFine);
    if (!list.knowsController(fine) || !passing(list, rule, {&partner, 1})) {
        return std::nullopt;
    }
    return Advice{rule, Kind::tearsFineValue,
                  "swallows controller " + controllerWords(*controller) + ", while controller " +
                      controllerWords(partner) +
                      " passes: the two are the coarse and the fine half of one value",
                  "Let both pass, or give both halves such a rule."};
}

std::optional<Advice> findTearsParameter(const AdvisedRules& list, std::size_t rule) {
    constexpr std::array<std::uint8_t, 4> numbers{98, 99, 100, 101};
    const auto controller = swallowedController(list, rule);
    if (controller == dataEntry || controller == fineDataEntry) {
        return tornFrom(list, rule, *controller, numbers);
    }
    if (controller && std::ranges::find(numbers, *controller) != numbers.end()) {
        const std::array<std::uint8_t, 2> partners{static_cast<std::uint8_t>(*controller ^ 1U), dataEntry};
        return tornFrom(list, rule, *controller, partners);
    }
    return std::nullopt;
}

std::optional<Advice> findTearsMPE(const AdvisedRules& list, std::size_t rule) {
    constexpr AdvisedRules::Channels members = 0x7FFE;  // all but channels 1 and 16, which lead the zones
    const auto& box = list.reach().box(rule);
    const auto messages = sentBy(list.rules()[rule].output);
    const bool isMoved = std::ranges::any_of(messages, [&](const SentMessage& message) {
        return message.kind == StatusV2::noteOn && list.channelsOf(rule, message) != box.channels();
    });
    if (!list.knowsMPE() || !isMoved || box.kind() != EventKind::noteOn || (box.channels() & members) == 0) {
        return std::nullopt;
    }
    return Advice{rule, Kind::tearsMPE,
                  "sends the notes of MPE channels on another channel: the bends and pressures of each "
                  "note stay behind",
                  "Take the channel From Trigger, so that each note stays on its own."};
}

}  // namespace quillo
