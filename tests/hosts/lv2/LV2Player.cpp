// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2TestHost.hpp"
#include "simulation/Player.hpp"

namespace quillo::test {

namespace {

/// The plug-in that was built, by its C descriptor.
class LV2Player final : public Player {
public:
    explicit LV2Player(double rate) : host_(lv2Plain, rate) { host_.activate(); }

    void edit(const std::vector<Rule>& rules) override { host_.unit().onRulesChanged(rules); }
    void send(const RuleOutputVariantsV2& message) override { host_.unit().onInstantMessageClick(message); }
    void panic() override { host_.unit().panic(); }
    bool setRate(double /*rate*/) override { return false; }
    void restart(const RestartStep& /*step*/) override {
        host_.deactivate();
        host_.activate();
    }
    [[nodiscard]] Bytes save() override { return host_.save(); }
    bool restore(const Bytes& document) override { return host_.load(document) == LV2_STATE_SUCCESS; }

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> room) override {
        host_.capacity = static_cast<std::uint32_t>(room.value().bytes + sizeof(LV2_Atom_Sequence));
        input_.clear();
        for (const auto& event : events) {
            take(event);
        }
        const auto start = host_.now;
        host_.run(frames, input_);
        Sent sent;
        for (auto& message : host_.take()) {
            sent.emplace_back(message.time - start, std::move(message.bytes));
        }
        return sent;
    }

    [[nodiscard]] std::optional<Counts> counts() override { return std::nullopt; }
    [[nodiscard]] EditorUnit* editorUnit() override {
        host_.unit().viewDidLoad();
        return &host_.unit();
    }
    [[nodiscard]] CallCounts calls() const override { return host_.calls; }

private:
    void take(const Incoming& event) {
        if (const auto* report = std::get_if<TransportReport>(&event.what)) {
            input_.addPosition(event.offset, report->moves ? report->speed : 0.0, report->position);
            return;
        }
        for (auto left = event.times; left > 0; --left) {
            input_.addMIDI(event.offset, std::get<Bytes>(event.what));
        }
    }

    LV2TestHost host_;
    LV2Sequence input_;
};

}  // namespace

std::unique_ptr<Player> makeLV2Player(double rate) {
    return std::make_unique<LV2Player>(rate);
}

}  // namespace quillo::test
