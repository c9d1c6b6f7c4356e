// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "hosts/clap/CLAPTestHost.hpp"
#include "persistence/PluginData.hpp"
#include "simulation/Player.hpp"

namespace quillo::test {

namespace {

/// The plug-in that was built, by its C entry. Rules come as state. A plug-in that a host stops where it may
/// sleep may have missed changes of the transport.
class CLAPPlayer final : public Player {
public:
    explicit CLAPPlayer(bool stopsAsleep) {
        host_.stopsWhenAsleep = stopsAsleep;
        host_.start();
    }
    ~CLAPPlayer() override { host_.stop(); }
    CLAPPlayer(const CLAPPlayer&) = delete;
    CLAPPlayer& operator=(const CLAPPlayer&) = delete;

    void edit(const std::vector<Rule>& rules) override { host_.loadRules(rules); }
    void send(const RuleOutputVariantsV2& /*message*/) override {}
    bool setRate(double /*rate*/) override { return false; }
    void restart(const RestartStep& step) override {
        host_.steadyTime += step.frames;
        if (step.isReset) {
            host_.plugin->reset(host_.plugin);
            return;
        }
        host_.stop();
        host_.start();
    }
    [[nodiscard]] Bytes save() override { return host_.save(); }
    bool restore(const Bytes& document) override { return host_.load(document); }

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> room) override {
        host_.room = room ? room->messages() : std::numeric_limits<std::size_t>::max();
        host_.takesSystemExclusive = !room || room->takesSystemExclusive;
        input_.clear();
        transport_.reset();
        for (const auto& event : events) {
            take(event);
        }
        const auto start = host_.now;
        status_ = host_.process(frames, input_, transport_ ? &*transport_ : nullptr);
        Sent sent;
        for (auto& message : host_.take()) {
            sent.emplace_back(message.time - start, std::move(message.bytes));
        }
        return sent;
    }

    [[nodiscard]] std::optional<Counts> counts() override { return std::nullopt; }
    [[nodiscard]] std::optional<bool> maySleep() const override {
        EXPECT_TRUE(status_ == CLAP_PROCESS_SLEEP || status_ == CLAP_PROCESS_CONTINUE) << status_;
        return status_ == CLAP_PROCESS_SLEEP;
    }
    [[nodiscard]] CallCounts calls() const override { return host_.calls; }

private:
    void take(const Incoming& event) {
        if (const auto* report = std::get_if<TransportReport>(&event.what)) {
            report->isOfBlock ? void(transport_ = transportOf(*report))
                              : input_.addTransport(event.offset, transportOf(*report));
            return;
        }
        for (auto left = event.times; left > 0; --left) {
            input_.addMIDI(event.offset, std::get<Bytes>(event.what));
        }
    }

    static clap_event_transport_t transportOf(const TransportReport& report) {
        constexpr std::uint32_t playing = CLAP_TRANSPORT_IS_PLAYING;
        constexpr std::uint32_t recording = CLAP_TRANSPORT_IS_RECORDING;
        constexpr std::uint32_t cycling = CLAP_TRANSPORT_IS_LOOP_ACTIVE;
        const auto flags = (report.moves ? playing : 0U) | (report.records ? recording : 0U) |
                           (report.cycles ? cycling : 0U);
        auto event = clapTransport(flags, static_cast<double>(report.position.value_or(0)));
        if (!report.position) {
            event.flags &= ~std::uint32_t{CLAP_TRANSPORT_HAS_SECONDS_TIMELINE};
        }
        return event;
    }

    CLAPTestHost host_;
    CLAPEvents input_;
    std::optional<clap_event_transport_t> transport_;  ///< of the block
    clap_process_status status_ = CLAP_PROCESS_CONTINUE;
};

}  // namespace

std::unique_ptr<Player> makeCLAPPlayer(bool stopsAsleep) {
    return std::make_unique<CLAPPlayer>(stopsAsleep);
}

}  // namespace quillo::test
