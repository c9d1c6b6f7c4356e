// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ExplanationText.hpp"

#include <algorithm>
#include <variant>

#include "analysis/RuleReasons.hpp"
#include "midi/Status.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"
#include "words/MessageWords.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Verdict = RuleAccount::Verdict;

constexpr std::size_t widestName = 30;
constexpr std::size_t verdictWidth = 13;

/// The lines of one rule: a verdict and its reason, then what there is to say more.
struct Line {
    std::string verdict;
    std::string reason;
};
using Lines = std::vector<Line>;

/// "90 3c 64: note-on 60 (C3), velocity 100, channel 1".
std::string sentWords(const MIDIMessage& message) {
    const auto words = messageWords(message.bytes());
    return shownBytes(message) + ": " + (words.empty() ? "an incomplete or damaged MIDI message" : words);
}

/// The width of the widest name.
std::size_t nameColumn(const std::vector<Rule>& rules, const RuleShelf& shelf) {
    std::size_t width = 0;
    visitInOrder(rules, shelf, [&width](const Rule& rule, bool /*isOff*/) {
        width = std::max(width, characterCount(inQuotes(rule.name, widestName)));
    });
    return width;
}

/// Explains one event, rule by rule.
class Page {
public:
    Page(const std::vector<Rule>& rules, const AskedEvent& event, const EventExplanation& explanation,
         const RuleShelf& shelf)
        : rules_(rules),
          shelf_(shelf),
          event_(event),
          explanation_(explanation),
          reasons_(ruleReasons(rules, event, explanation)),
          numberWidth_(std::to_string(rules.size()).size()),
          nameWidth_(nameColumn(rules, shelf)) {}

    [[nodiscard]] std::string text() const {
        auto page = eventWords(event_) + '\n';
        if (!isDropped()) {
            page += rulesText();
        }
        return page + "Result: " + result() + '\n';
    }

private:
    [[nodiscard]] std::string rulesText() const {
        std::string text;
        std::size_t next = 0;
        visitInOrder(rules_, shelf_, [&](const Rule& rule, bool isOff) {
            text += isOff ? ruleText("-", rule, {{switchedOff().verdict, ""}})
                          : ruleText(std::to_string(next + 1), rule, lines(next));
            next += isOff ? 0U : 1U;
        });
        return text.empty() ? "  There are no rules.\n" : text;
    }

    [[nodiscard]] std::string ruleText(const std::string& number, const Rule& rule,
                                       const Lines& lines) const {
        auto beginning = "  " + std::string(numberWidth_ - number.size(), ' ') + number + "  " +
                         padded(inQuotes(rule.name, widestName), nameWidth_) + "  ";
        const auto width = characterCount(beginning);
        std::string text;
        for (const auto& line : lines) {
            text += padded(beginning, width) + padded(line.verdict, line.reason.empty() ? 0 : verdictWidth) +
                    line.reason + '\n';
            beginning.clear();
        }
        return text;
    }

    /// The reason, then what each message is that was sent, then the policy that stopped the event.
    [[nodiscard]] Lines lines(std::size_t rule) const {
        Lines lines{{reasons_[rule].verdict, reasons_[rule].words}};
        for (const auto& message : explanation_.rules[rule].messages) {
            lines.push_back({"", sentWords(message)});
        }
        if (reasons_[rule].consumed) {
            lines.push_back({"", stopReason(rule)});
        }
        return lines;
    }

    /// What a policy did, with a word more where the rule could not have matched in any case.
    [[nodiscard]] std::string stopReason(std::size_t rule) const {
        const auto& trigger = rules_[rule].trigger;
        const auto policy = policyWords(*policyOf(trigger)) + ": ";
        if (reasons_[rule].fired) {
            return policy + "the event matched this rule";
        }
        const bool isHostRule = trigger.is<RuleTriggerV2::HostTransport>();
        if (isHostRule && isMessage()) {
            return policy + "a rule for the host's transport matches no MIDI, so it swallows all of it";
        }
        if (!isHostRule && !isMessage()) {
            return policy + "a rule for MIDI matches no host event, so it stops all of them";
        }
        return policy + "the event did not match this rule";
    }

    [[nodiscard]] std::string result() const {
        return std::visit(Overloaded{
                              [this](const MIDIMessage&) { return messageResult(); },
                              [this](HostTransportTriggerVariantsV2) { return transportResult(); },
                              [this](PluginLoad) { return loadingResult(); },
                          },
                          event_);
    }

    [[nodiscard]] std::string messageResult() const {
        if (isDropped()) {
            return "dropped: incoming system exclusive is never shown to the rules and never forwarded.";
        }
        if (explanation_.forwarded) {
            return std::string("no rule swallowed it: it is forwarded") +
                   (firesAtOnce() ? ", after what the rules send at once." : ".");
        }
        return "swallowed by " + consumerWords() + ". " + sent();
    }

    [[nodiscard]] std::string transportResult() const {
        const auto way = explanation_.consumer ? "stopped by " + consumerWords() : "it passed every rule";
        return way + ". " + sent();
    }

    [[nodiscard]] std::string loadingResult() const {
        return fires() ? "each rule that waits for loading fires once."
                       : "no rule waits for loading. " + sent();
    }

    [[nodiscard]] std::string sent() const {
        return fires() ? "Only what the rules send goes out." : "Nothing goes out.";
    }

    [[nodiscard]] bool fires() const { return std::ranges::any_of(reasons_, &RuleReason::fired); }

    [[nodiscard]] bool firesAtOnce() const {
        return std::ranges::any_of(explanation_.rules, [](const RuleAccount& account) {
            return account.verdict == Verdict::fires && account.delay == 0;
        });
    }

    /// Whether the unit keeps the event from the rules.
    [[nodiscard]] bool isDropped() const {
        const auto* message = std::get_if<MIDIMessage>(&event_);
        return message != nullptr && midi::isSystemExclusive(message->bytes());
    }

    [[nodiscard]] bool isMessage() const { return std::holds_alternative<MIDIMessage>(event_); }

    [[nodiscard]] std::string consumerWords() const {
        return ruleAndPolicyWords(rules_, *explanation_.consumer);
    }

    const std::vector<Rule>& rules_;
    const RuleShelf& shelf_;
    const AskedEvent& event_;
    const EventExplanation& explanation_;
    std::vector<RuleReason> reasons_;
    std::size_t numberWidth_;
    std::size_t nameWidth_;
};

}  // namespace

std::string explanationText(const std::vector<Rule>& rules, const AskedEvent& event,
                            const EventExplanation& explanation, const RuleShelf& shelf) {
    return Page(rules, event, explanation, shelf).text();
}

}  // namespace quillo
