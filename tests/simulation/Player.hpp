// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "realtime/CallCounter.hpp"
#include "session/EditorUnit.hpp"
#include "simulation/SlowModel.hpp"

namespace quillo::test {

/// An instance behind a format, as its host and its user reach it.
class Player {
public:
    Player() = default;
    virtual ~Player() = default;
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    virtual void edit(const std::vector<Rule>& rules) = 0;
    virtual void send(const RuleOutputVariantsV2& message) = 0;
    /// Only where the format lets a user ask for it.
    virtual void panic() {}
    /// False when it is rejected.
    virtual bool setRate(double rate) = 0;
    virtual void restart(const RestartStep& step) = 0;
    [[nodiscard]] virtual Bytes save() = 0;
    /// False when the document is rejected.
    virtual bool restore(const Bytes& document) = 0;

    virtual Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
                       std::optional<RoomLimit> room) = 0;

    /// Nothing where the format hides the engine.
    [[nodiscard]] virtual std::optional<Counts> counts() = 0;

    /// Whether the last block said that the host may let it sleep; nothing where a format cannot say so.
    [[nodiscard]] virtual std::optional<bool> maySleep() const { return std::nullopt; }

    /// What an editor that is opened now reaches; null where the format hides it.
    [[nodiscard]] virtual EditorUnit* editorUnit() { return nullptr; }

    /// What blocks have called so far that a render thread must not.
    [[nodiscard]] virtual CallCounts calls() const = 0;
};

/// What of a scenario a format can carry.
struct FormatLimits {
    bool sendsByHand = true;
    bool panics = true;
    bool setsRate = false;          ///< while it lives
    bool reportsInBlocks = true;    ///< the transport, also before the beginning and without a position
    bool reportsForBlocks = false;  ///< the transport, before all that comes in
    bool resets = false;
    bool records = false;
    bool cycles = false;
    bool changesSpeed = false;
    bool startsSlowly = false;
    bool limitsRoom = false;
    bool takesGarbage = true;
    bool hasEditor = true;
    std::vector<double> rates;
};

[[nodiscard]] FormatLimits limitsOf(Format format);

[[nodiscard]] bool isBuilt(Format format);

/// A new instance in a scenario's host, activated; of a format that was built.
[[nodiscard]] std::unique_ptr<Player> makePlayer(const Scenario& scenario, double rate);

[[nodiscard]] std::unique_ptr<Player> makeLV2Player(double rate);
[[nodiscard]] std::unique_ptr<Player> makeCLAPPlayer(bool stopsAsleep);
[[nodiscard]] std::unique_ptr<Player> makeJackPlayer(double rate);

}  // namespace quillo::test
