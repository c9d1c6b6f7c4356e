// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/RuleReach.hpp"
#include "analysis/SentMessage.hpp"
#include "analysis/StuckNoteAnalysis.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// A rule list, and what is worked out of it once for all finders of advice. Of rules that can never fire it
/// knows what they wait for, but not what they send.
class AdvisedRules {
public:
    /// One bit for each channel, channel 1 the lowest.
    using Channels = std::uint16_t;

    /// A message and the rule that sends it.
    struct Sender {
        std::size_t rule;
        SentMessage message;
    };

    /// The rules must outlive it.
    explicit AdvisedRules(const std::vector<Rule>& rules);

    [[nodiscard]] const std::vector<Rule>& rules() const { return rules_; }
    [[nodiscard]] const RuleReach& reach() const { return reach_; }
    [[nodiscard]] const StuckNoteAnalysis& notes() const { return notes_; }

    [[nodiscard]] const std::vector<Sender>& programs() const { return programs_; }
    /// Rules that send a reset of all of a device's settings, as system exclusive.
    [[nodiscard]] const std::vector<std::size_t>& resets() const { return resets_; }

    /// The first rule that does for the same event what this one does, if there is one above it.
    [[nodiscard]] std::optional<std::size_t> twin(std::size_t rule) const { return twins_[rule]; }

    /// The channels on which a message of a rule goes out.
    [[nodiscard]] Channels channelsOf(std::size_t rule, const SentMessage& message) const;

    /// The channels where some rule lets a pedal up, or brings the pitch bend to its middle.
    [[nodiscard]] Channels pedalUps(std::uint8_t controller) const { return pedalUps_.at(controller); }
    [[nodiscard]] Channels centredBends() const { return centredBends_; }

    /// Whether some rule waits for such events.
    [[nodiscard]] bool waitsFor(EventKind kind) const { return kinds_[static_cast<std::size_t>(kind)]; }
    /// Whether some rule waits for the controller or sends it.
    [[nodiscard]] bool knowsController(std::uint8_t controller) const { return controllers_[controller]; }
    /// Whether some rule waits for or sends what sets up an MPE zone: registered parameter 6.
    [[nodiscard]] bool knowsMPE() const { return knowsMPE_; }

    /// Whether one event fires both rules.
    [[nodiscard]] bool fireTogether(std::size_t one, std::size_t other) const;

private:
    void noteTrigger(std::size_t rule);
    void noteSent(const Sender& sender);
    void noteController(const Sender& sender);
    void noteReset(std::size_t rule);
    void findTwins();

    const std::vector<Rule>& rules_;
    const RuleReach reach_;
    const StuckNoteAnalysis notes_;
    std::vector<Sender> programs_;
    std::vector<std::size_t> resets_;
    std::vector<std::optional<std::size_t>> twins_;
    std::array<Channels, 128> pedalUps_{};
    Channels centredBends_ = 0;
    std::bitset<16> kinds_;
    std::bitset<128> controllers_;
    bool knowsMPE_ = false;
};

}  // namespace quillo
