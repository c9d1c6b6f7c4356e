// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulation/Simulation.hpp"

#include <gtest/gtest-spi.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "persistence/PluginData.hpp"
#include "platform/HexText.hpp"
#include "simulation/Player.hpp"
#include "simulation/SimulatedUser.hpp"

namespace quillo::test {

namespace {

class Simulation {
public:
    explicit Simulation(const Scenario& scenario)
        : scenario_(scenario),
          rate_(scenario.rate),
          player_(makePlayer(scenario_, rate_)),
          model_(scenario_, rate_),
          saved_(player_->save()) {}

    /// One line about the first difference.
    std::optional<std::string> failure;
    double seconds = 0.0;

    void operator()(const BlockStep& step) {
        for (std::uint32_t i = 0; i < step.count && !failure; ++i) {
            block(step.frames, i == 0 ? step.events : nothing_,
                  i == 0 && step.room ? step.room : usualRoom());
        }
    }
    void operator()(const EditStep& step) {
        if (user_) {
            user_->import(step.rules);
            return look();
        }
        if (hasLogs_) {
            expect(player_->restore(PluginData{step.rules}.write()), "a state is rejected");
        } else {
            player_->edit(step.rules);
        }
        hold({step.rules});
    }
    void operator()(const UserStep& step) {
        if (step.action == UserStep::Action::open && !user_) {
            open();
        } else if (step.action == UserStep::Action::close) {
            user_.reset();
        } else if (user_) {
            user_->act(step);
        }
        look();
    }
    void operator()(const SendStep& step) {
        player_->send(step.message);
        model_.send(step.message);
    }
    void operator()(const PanicStep& /*step*/) {
        player_->panic();
        model_.panic();
    }
    void operator()(const RateStep& step) {
        const bool valid = step.rate >= 1.0 && step.rate <= 1e9;
        expect(player_->setRate(step.rate) == valid, "an invalid rate is accepted, or a valid one rejected");
        if (valid) {
            rate_ = step.rate;
            model_.setRate(rate_);
        }
    }
    void operator()(const SaveStep& /*step*/) {
        saved_ = player_->save();
        savedRules_ = {model_.rules(), shelf_};
        expect(PluginData::read(saved_) == savedRules_, "the saved rules are others");
    }
    void operator()(const RestoreStep& /*step*/) {
        expect(player_->restore(saved_), "the saved state is rejected");
        hold(savedRules_);
        if (user_) {
            user_->see(savedRules_);
            look();
        }
    }
    void operator()(const DamagedStep& step) {
        auto damaged = saved_;
        damaged.resize(step.length % damaged.size());
        const bool taken = player_->restore(damaged);
        expect(taken == (scenario_.format == Format::unit), "a damaged state is taken");
        if (taken) {
            hold({});
        }
        look();
    }
    void operator()(const MoveStep& /*step*/) {
        const auto document = player_->save();
        user_.reset();
        hasLogs_ = false;
        player_ = makePlayer(scenario_, rate_);
        expect(player_->restore(document), "the saved state is rejected elsewhere");
        auto rules = model_.rules();
        model_ = SlowModel(scenario_, rate_);
        model_.edit(std::move(rules));
    }
    void operator()(const RestartStep& step) {
        player_->restart(step);
        model_.restart(step.frames);
    }

private:
    /// The instance holds this document now.
    void hold(const PluginData& document) {
        model_.edit(document.rules);
        shelf_ = document.shelf;
    }

    /// An LV2 buffer always has an end.
    [[nodiscard]] std::optional<RoomLimit> usualRoom() const {
        return scenario_.format == Format::lv2 ? std::optional(RoomLimit{8192}) : std::nullopt;
    }

    void block(std::uint32_t frames, const std::vector<Incoming>& events, std::optional<RoomLimit> room) {
        const auto expected = model_.block(frames, events, room);
        const auto sent = player_->block(frames, events, room);
        seconds += frames / rate_;
        compare(expected, sent);
        expect(model_.addsUp(), "the model has lost a message");
        expect(!model_.hasLeftNotesSounding(), "notes sound on that were to end");
        expect(player_->calls() == noCalls, "the render side allocates, frees or locks");
        if (user_) {
            look();
        }
        if (const auto sleeps = player_->maySleep()) {
            expect(*sleeps == model_.maySleep(), *sleeps ? "it may sleep and has something to do"
                                                         : "it may not sleep and has nothing to do");
        }
        if (const auto counts = player_->counts()) {
            compare(model_.counts(), *counts);
        }
    }

    void open() {
        if (auto* unit = player_->editorUnit()) {
            if (!std::exchange(hasLogs_, true)) {
                model_.clearLogs();
            }
            user_.emplace(*unit, PluginData{model_.rules(), shelf_});
        }
    }

    /// What the editor shows, and what its user's edits have made of the rules.
    void look() {
        if (!user_) {
            return;
        }
        user_->look();
        if (const auto difference = user_->difference()) {
            return expect(false, *difference);
        }
        compare(model_.heard(), user_->model().inLog(), "in");
        compare(model_.told(), user_->model().outLog(), "out");
        hold(user_->document());
        expect(PluginData::read(player_->save()) == user_->document(), "the rules that are kept are others");
    }

    void compare(const SlowModel::Log& expected, const QuilloModel::Log& log, const std::string& name) {
        const auto isSame = [](const auto& should, const EventLogEntry& is) {
            const auto* midi = is.variants.midi();
            const auto bytes = midi != nullptr
                                   ? copyOf(midi->message.bytes())
                                   : Bytes{static_cast<std::uint8_t>(is.variants.host()->trigger)};
            return should == std::pair(std::int64_t{is.timestamp}, bytes);
        };
        expect(std::equal(expected.begin(), expected.end(), log.begin(), log.end(), isSame),
               "the editor's log of what goes " + name + " is another");
    }

    void compare(const Sent& expected, const Sent& sent) {
        if (expected == sent) {
            return;
        }
        const auto [should, is] = std::ranges::mismatch(expected, sent);
        expect(false, "message " + std::to_string(should - expected.begin() + 1) +
                          " of the block should be " + (should == expected.end() ? "none" : words(*should)) +
                          " and is " + (is == sent.end() ? "none" : words(*is)));
    }

    void compare(const Counts& expected, const Counts& counts) {
        if (expected == counts) {
            return;
        }
        expect(false, "the counts should be " + words(expected) + " and are " + words(counts));
    }

    static std::string words(const Sent::value_type& message) {
        return "[" + std::to_string(message.first) + "] " + hexText(message.second, HexCase::upper);
    }

    static std::string words(const Counts& counts) {
        std::ostringstream out;
        out << counts.waiting << " waiting (next " << counts.nextDue.value_or(-1) << "), " << counts.byHand
            << " by hand, " << counts.refused << " refused, " << counts.leftOut << " left out, "
            << counts.heard << " heard, " << counts.told << " told";
        return out.str();
    }

    void expect(bool holds, const std::string& what) {
        if (!holds && !failure) {
            failure = what;
        }
    }

    const std::vector<Incoming> nothing_;
    const Scenario& scenario_;
    double rate_;
    std::unique_ptr<Player> player_;
    SlowModel model_;
    Bytes saved_;
    RuleShelf shelf_;  ///< what the instance keeps switched off
    PluginData savedRules_;
    std::optional<SimulatedUser> user_;
    bool hasLogs_ = false;  ///< since the first editor
};

}  // namespace

Outcome simulate(const Scenario& scenario) {
    testing::TestPartResultArray hostFailures;
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &hostFailures);
    Simulation simulation(scenario);
    for (std::size_t i = 0; i < scenario.steps.size(); ++i) {
        try {
            std::visit(simulation, scenario.steps[i]);
        } catch (const std::exception& error) {
            simulation.failure = std::string("thrown: ") + error.what();
        }
        if (!simulation.failure && hostFailures.size() > 0) {
            simulation.failure = std::string("the host: ") + hostFailures.GetTestPartResult(0).message();
        }
        if (simulation.failure) {
            return {"step " + std::to_string(i + 1) + ": " + *simulation.failure, simulation.seconds};
        }
    }
    return {std::nullopt, simulation.seconds};
}

}  // namespace quillo::test
