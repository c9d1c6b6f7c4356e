// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/AUParameterTree.hpp"
#include "platform/MainQueue.hpp"
#include "rules/Rule.hpp"
#include "session/EditorLogs.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// Makes the unit for the host, owns the editor's model, and connects the two once both the unit and the view
/// are there, whichever comes second: edits flow into the unit's processor, the unit's rules into the model
/// when they connect and whenever the unit's state is replaced, and the unit's log callbacks into the model's
/// logs. Make controllers by `std::make_shared`. [main] unless an operation says otherwise.
class AudioUnitViewController final : public EditorUnit,
                                      public std::enable_shared_from_this<AudioUnitViewController> {
public:
    /// The size that the view opens with, in points.
    static constexpr int preferredWidth = 500;
    static constexpr int preferredHeight = 250;

    /// The queue must outlive the controller.
    explicit AudioUnitViewController(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    /// [any] The factory: makes the unit, or hands back its error and changes nothing.
    [[nodiscard]] std::variant<std::shared_ptr<MIDIQuilloAUAudioUnit>, NSError> createAudioUnit(
        const AudioComponentDescription& description);

    /// [any] The factory's second half, for a host whose own factory makes the unit: from now on `unit`,
    /// never null, is the controller's.
    void adoptAudioUnit(std::shared_ptr<MIDIQuilloAUAudioUnit> unit);

    /// The view has been made.
    void viewDidLoad() override;
    [[nodiscard]] bool isViewLoaded() const { return viewLoaded_; }

    /// Installs an edited list in the unit; dropped without a unit. While a restored list waits to be shown,
    /// an edit is one of the list before, and is dropped, too. The model's logs first get the events that ran
    /// under the rules before. Throws the `FatalError` of rules that cannot be compiled; those that were
    /// installed stay.
    void onRulesChanged(std::vector<Rule> rules, RuleShelf shelf = {}) override;

    /// Sends a message by hand; dropped without a unit. Throws the `FatalError` of one that takes something
    /// from a triggering message.
    void onInstantMessageClick(const RuleOutputVariantsV2& message) override;

    /// None without a unit.
    [[nodiscard]] std::vector<RuleReason> why(const EventLogEntryVariants& event) override;

    /// Nothing without a unit.
    [[nodiscard]] MarkedLog whatNow() override;

    void tellUser(std::string message) override { userTeller()(std::move(message)); }

    /// [any] `tellUser` for callers that may outlive the controller: then it does nothing.
    [[nodiscard]] std::function<void(std::string message)> userTeller() const;

    /// Drains the main queue.
    void drain() override { mainQueue_.drain(); }

    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return model_; }

    /// [any] The unit, null until the factory has made it.
    [[nodiscard]] std::shared_ptr<MIDIQuilloAUAudioUnit> audioUnit() const;

    /// Whether the connection is still to be made. Made once, it is never given up.
    [[nodiscard]] bool needsConnection() const { return needsConnection_; }

private:
    void connectAudioUnit();
    void loadRulesFromAudioUnit();
    void loadRulesLater();
    void moveLogs() const;

    MainQueue& mainQueue_;
    std::shared_ptr<QuilloModel> model_ = std::make_shared<QuilloModel>();
    bool viewLoaded_ = false;
    bool needsConnection_ = true;
    std::atomic<bool> loadingRules_{false};  ///< whether the rules are about to be loaded: once is enough

    mutable std::mutex audioUnitMutex_;  ///< the factory may run on any thread
    std::shared_ptr<MIDIQuilloAUAudioUnit> audioUnit_;

    Observation observer_;  ///< of the unit's whole state
    AUParameterObserverToken parameterObserverToken_;
    std::optional<EditorLogs> logs_;  ///< once connected
    Observation logPoll_;
};

}  // namespace quillo
