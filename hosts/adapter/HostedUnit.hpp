// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "audiounit/AudioUnitViewController.hpp"
#include "audiounit/platform/StateDictionary.hpp"
#include "hosts/adapter/BlockRenderer.hpp"
#include "hosts/adapter/PendingAlerts.hpp"
#include "platform/MainQueue.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// A unit with everything around it that a host's adapter needs, but for the window: the controller with the
/// editor's model, the renderer, and state that is taken whole or not at all. Editors reach it as an
/// `EditorUnit`; while no editor is open it need not be drained.
///
/// An operation that fails says why, in words for a musician, and changes nothing. The constructor throws
/// what cannot be helped: no memory. [main] unless an operation says otherwise.
class HostedUnit final : public EditorUnit {
public:
    explicit HostedUnit(HostTransport transport = HostTransport());
    ~HostedUnit();

    /// [any] Whether so many frames a second are a rate that can be rendered at: at least one, at most 10^9.
    [[nodiscard]] static bool isSampleRate(double rate);

    /// Gets ready to render at this rate; an invalid rate is rejected. Rules that are there already get their
    /// delays anew when the rate is another one than theirs, so that they stay right in milliseconds. Nothing
    /// on success.
    [[nodiscard]] std::optional<std::string> activate(double sampleRate, std::uint32_t longestBlock);
    void deactivate();

    /// [any but render] The state document: the bytes that a preset file has too. Throws a `FatalError` when
    /// the rules cannot be written.
    [[nodiscard]] std::vector<std::uint8_t> save() const;

    /// [any but render] Puts a state document in the place of the rules. Nothing on success. A document that
    /// cannot be read or compiled leaves the rules that were there, and the editor's user is told why.
    [[nodiscard]] std::optional<std::string> restore(std::span<const std::uint8_t> document);

    // For the editor.
    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return controller_->model(); }
    void viewDidLoad() override;
    void onRulesChanged(std::vector<Rule> rules) override;
    void onInstantMessageClick(const RuleOutputVariantsV2& message) override;
    void tellUser(std::string message) override { alerts_.add(message); }
    void drain() override;

    /// `callback` runs after each edit: the host's project has changed.
    void setOnEdit(std::function<void()> callback) { onEdit_ = std::move(callback); }

    /// [any but render] What the user was told, or is to be told, is true no more.
    void takeBack(const std::string& message);

    [[nodiscard]] MIDIQuilloAUAudioUnit& unit() { return *unit_; }
    [[nodiscard]] BlockRenderer& renderer() QUILLO_REALTIME { return renderer_; }
    [[nodiscard]] AudioUnitViewController& controller() { return *controller_; }
    [[nodiscard]] MainQueue& mainQueue() { return mainQueue_; }

private:
    /// Different refusals that the user is told of: more say nothing new.
    static constexpr std::size_t mostRefusals = 100;

    void setSampleRate(double sampleRate);
    void install(std::span<const std::uint8_t> document);
    [[nodiscard]] std::optional<std::string> whyNotInstalled(std::span<const std::uint8_t> document);
    void tellFatalError();
    void tellRefusals();
    void showNextAlert();

    MainQueue mainQueue_;
    std::shared_ptr<AudioUnitViewController> controller_;
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_;
    BlockRenderer renderer_;
    std::function<void()> onEdit_ = [] {};
    PendingAlerts alerts_;
    bool fatalErrorTold_ = false;
    std::set<RefusedMessages::Message> refusals_;  ///< the different ones so far
    std::set<std::string> refusalsTold_;           ///< the texts: different messages can have the same
};

}  // namespace quillo
