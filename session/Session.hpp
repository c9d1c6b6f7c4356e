// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "engine/RuleProcessor.hpp"
#include "log/LogCallback.hpp"
#include "session/BlockRenderer.hpp"
#include "session/EditorLogs.hpp"
#include "session/EditorUnit.hpp"
#include "session/HitHistory.hpp"
#include "session/PendingAlerts.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// What every host needs of an instance and no format knows: the processor and the renderer over it, state
/// that is taken whole or not at all, and what an editor shows. Editors reach it as an `EditorUnit`; while
/// none is open it need not be drained.
///
/// An operation that fails says why, in words for a musician, and changes nothing. The constructor throws
/// what cannot be helped: no memory. [main] unless an operation says otherwise.
class Session final : public EditorUnit {
public:
    /// A larger state document is not restored: read, it may take some forty times its bytes. It is twice the
    /// largest preset, so that what could be imported can be restored.
    static constexpr std::size_t longestDocument = std::size_t{128} << 20U;

    explicit Session(HostTransport transport = HostTransport());
    ~Session();

    /// [any] Whether so many frames a second are a rate that can be rendered at: at least one, at most 10^9.
    [[nodiscard]] static bool isSampleRate(double rate);

    /// The rate of the frames from now on, rounded down; an invalid one is rejected. Rules that are there
    /// already get their delays again when it is another one than theirs, so that they stay right in
    /// milliseconds; what waits already keeps its frames. Nothing on success.
    [[nodiscard]] std::optional<std::string> setSampleRate(double rate);

    /// [any but render] The state document: the bytes that a preset file has too. Throws an `EncodingError`
    /// when the rules cannot be written.
    [[nodiscard]] std::vector<std::uint8_t> save();

    /// [any but render] The same for a host's project. Nothing when the rules cannot be written: the editor
    /// shows why.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> trySave();

    /// [any but render] Puts a state document in the place of the rules. Nothing on success. A document that
    /// cannot be read or compiled leaves the rules that were there, and the editor shows why.
    [[nodiscard]] std::optional<std::string> restore(std::span<const std::uint8_t> document);

    /// [any but render] The same with rules that have been read. Throws the `FatalError` of those that cannot
    /// be compiled.
    void install(std::vector<Rule> rules, RuleShelf shelf = {});

    // For the editor.
    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return model_; }
    void viewDidLoad() override;
    /// [main] While a restored list waits to be shown, an edit is one of the list before, and is dropped.
    /// The model's logs first get the events that ran under the rules before.
    void onRulesChanged(std::vector<Rule> rules, RuleShelf shelf = {}) override;
    void onInstantMessageClick(const RuleOutputVariantsV2& message) override;
    [[nodiscard]] std::vector<RuleReason> why(const EventLogEntryVariants& event) override;
    [[nodiscard]] MarkedLog whatNow() override;
    void tellUser(std::string message) override { alerts_.add(message); }
    void drain() override;
    [[nodiscard]] bool tellsWhatItDoes() const override { return true; }
    void watchWaiting(bool isSeen) override;
    void cancelWaiting(std::uint64_t number) override;
    void cancelAllWaiting() override;
    void panic() override;
    void sendAllOnLoad() override;
    void setNotesEndWhenRulesChange(bool theyEnd) override { notesEnd_ = theyEnd; }
    [[nodiscard]] bool notesEndWhenRulesChange() const override { return notesEnd_; }

    /// `callback` runs after each edit: the host's project has changed.
    void setOnEdit(std::function<void()> callback) { onEdit_ = std::move(callback); }

    /// What the user was alerted to, or is to be, is no longer true.
    void takeBack(const std::string& message);

    [[nodiscard]] RuleProcessor& processor() { return processor_; }
    [[nodiscard]] BlockRenderer& renderer() QUILLO_REALTIME { return renderer_; }

    LogCallback logInput;   ///< every incoming event that the rules see, before they do
    LogCallback logOutput;  ///< every message that the host has taken

private:
    /// So many different refusals are reported to the user: more say nothing new.
    static constexpr std::size_t mostRefusals = 100;

    [[nodiscard]] std::optional<std::string> whyNotInstalled(std::span<const std::uint8_t> document);
    [[nodiscard]] PluginData stored();
    void showRestoredRules();
    [[nodiscard]] HitHistory::Moment now();
    void endNotesIfAsked();
    void showHits();
    void showWaiting();
    [[nodiscard]] std::vector<WaitingOutput> waitingOutputs();
    void handOnCancellation();
    void showPanic();
    void tellFatalError();
    void tellRefusals();
    void tellLoss();
    void showNextAlert();

    RuleProcessor processor_;
    std::mutex
        installing_;   ///< of rules, with their shelf and hits: a new rate reads them and puts them back
    HitHistory hits_;  ///< of the rules that run
    RuleShelf shelf_;  ///< those that are switched off, with their places among these
    BlockRenderer renderer_;
    const std::shared_ptr<QuilloModel> model_ = std::make_shared<QuilloModel>();
    const Observation rulesShown_;       ///< of the model: their hits are theirs at once
    std::optional<EditorLogs> logs_;     ///< since the first editor
    std::atomic<bool> restored_{false};  ///< since the model was shown the rules
    std::function<void()> onEdit_ = [] {};
    std::atomic<bool> notesEnd_{false};  ///< when rules change
    bool waitingIsWatched_ = false;
    std::vector<WaitingSnapshot::Copy> waiting_;  ///< as of the last copies; the first to leave first
    std::deque<std::uint64_t> cancellations_;     ///< that the render thread has still to be asked for
    PendingAlerts alerts_;
    bool fatalErrorTold_ = false;
    bool lossTold_ = false;
    std::vector<RefusedMessages::Message> refusals_;  ///< the different ones so far
    std::set<std::string> refusalsTold_;              ///< the texts: different messages can have the same
};

}  // namespace quillo
