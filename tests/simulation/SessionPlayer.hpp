// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FatalError.hpp"
#include "session/Session.hpp"
#include "simulation/Player.hpp"

namespace quillo::test {

/// A session; how its blocks come is left to those below it.
class SessionPlayer : public Player {
public:
    explicit SessionPlayer(double rate) {
        static_cast<void>(session_.setSampleRate(rate));
        session_.logInput = WithoutDeadline([this](const EventLogEntry&) { ++heard_; });
        session_.logOutput = WithoutDeadline([this](const EventLogEntry&) { ++told_; });
    }

    void edit(const std::vector<Rule>& rules) override { session_.onRulesChanged(rules); }
    void send(const RuleOutputVariantsV2& message) override { session_.onInstantMessageClick(message); }
    bool setRate(double rate) override { return !session_.setSampleRate(rate); }
    void panic() override { session_.panic(); }
    /// As a format does it.
    void restart() override {
        session_.renderer().losePosition();
        session_.renderer().requests().ask(RenderRequests::Kind::endOfNotes);
    }
    [[nodiscard]] Bytes save() override { return session_.save(); }
    bool restore(const Bytes& document) override { return !session_.restore(document); }

    [[nodiscard]] std::optional<Counts> counts() override {
        auto& processor = session_.processor();
        auto& refused = session_.renderer().refused();
        return Counts{processor.pendingDelayedMessages(),
                      processor.nextDelayedMessage(),
                      processor.pendingInstantMessages(),
                      refused.refused(),
                      refused.leftOut(),
                      heard_,
                      told_};
    }

protected:
    Session session_;

private:
    std::uint64_t heard_ = 0;
    std::uint64_t told_ = 0;
};

}  // namespace quillo::test
