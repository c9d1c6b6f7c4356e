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
        count();
    }

    void edit(const std::vector<Rule>& rules) override { session_.onRulesChanged(rules); }
    void send(const RuleOutputVariantsV2& message) override { session_.onInstantMessageClick(message); }
    bool setRate(double rate) override { return !session_.setSampleRate(rate); }
    void panic() override { session_.panic(); }
    /// As a format does it.
    void restart(const RestartStep& /*step*/) override {
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

    [[nodiscard]] EditorUnit* editorUnit() override {
        session_.viewDidLoad();
        if (!std::exchange(hasLogs_, true)) {
            count();
        }
        return &session_;
    }

    [[nodiscard]] CallCounts calls() const override { return calls_; }

protected:
    /// Runs a part of a block, and counts what it calls; what the host does in it must be in a scope of its
    /// own.
    template <class Part>
    void render(Part part) {
        const CallCounter::Scope scope;
        part();
        calls_ += scope.counts();
    }

    Session session_;

private:
    /// An editor's logs have taken the place of what was counted.
    void count() {
        session_.logInput.also(WithoutDeadline([this](const EventLogEntry&) { ++heard_; }));
        session_.logOutput.also(WithoutDeadline([this](const EventLogEntry&) { ++told_; }));
    }

    bool hasLogs_ = false;
    CallCounts calls_;
    std::uint64_t heard_ = 0;
    std::uint64_t told_ = 0;
};

}  // namespace quillo::test
