// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Binding.hpp"
#include "editor/CardLayout.hpp"
#include "editor/CardLine.hpp"
#include "editor/Environment.hpp"
#include "editor/FieldSection.hpp"
#include "editor/LearnButton.hpp"
#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "editor/MySwitch.hpp"
#include "editor/RuleButtons.hpp"
#include "editor/RuleHeaderView.hpp"
#include "editor/RuleSearch.hpp"
#include "editor/RuleStatus.hpp"
#include "editor/RunBinding.hpp"
#include "editor/SectionLabel.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/RuleEntry.hpp"
#include "session/RuleHits.hpp"

namespace quillo {

/// What a rule card reads, and what it reports to its owner.
struct RuleViewActions {
    std::function<void(TriggerEntryType)> onTriggerTypeChange;
    std::function<void(const MIDIRuleType&)> onOutputTypeChange;
    std::function<void()> onDuplicate;
    std::function<void()> onDelete;
    std::function<void()> onSend;
    /// The switch was turned.
    std::function<void(bool on)> onSwitch;
    /// The button asks for the trigger to be learned.
    std::function<void(LearnButton& button)> onLearn;
    /// The button asks for the card's menu.
    std::function<void(juce::Component& button)> onMore;
    /// The run that the card stands for.
    RunBinding run{};
    /// The card wants to be shown in one line, or with its fields again.
    std::function<void(bool inOneLine)> onForm;
};

/// The card of a rule, or of a folded run: the grip it is dragged by, the name, the trigger, the message and
/// the buttons. Every field edits the entry of the rule, the first of a run, through the binding; the card
/// keeps no copy. Behind the name of a run stands of how many rules it consists.
///
/// The card says how often the rule fired; in its place, as long as there is one, stands the reason why it
/// does or does not fire. A hit lights the card up for a moment, a reason that says "fired" for as long as it
/// is shown. A rule that is switched off is greyed; the switch that does it stands at the card's right. A
/// card that is chosen has a line around it. In one line a card has no fields and no buttons: a click on what
/// its rule does asks for them, as do a double click on the grip and Return while that has the focus. [main]
/// only.
class RuleView final : public juce::Component, public EnvironmentScope {
public:
    /// How long a hit is seen, in seconds.
    static constexpr double lightTime = 0.15;

    RuleView(Binding<RuleEntry> data, RuleViewActions actions);

    /// The entry has changed, or the run.
    void refresh();

    /// What a search found on the card; nothing on one that fades.
    struct Found {
        bool isThere = true;
        bool isCurrent = false;         ///< it is the find that is looked at
        std::set<std::size_t> texts{};  ///< positions among `textsOf` the rule
    };
    void showFound(const Found& found);
    /// What is searched on the card of an entry: the name, and the fields.
    [[nodiscard]] static std::vector<SearchedText> textsOf(const RuleEntry& entry, const RuleRun& run);

    void setInOneLine(bool inOneLine);
    [[nodiscard]] bool isInOneLine() const { return inOneLine_; }

    /// Says how often the rule fired and when last. A higher count than before is a hit, which is seen if it
    /// was less than a second ago.
    void showHits(const RuleHits& hits);
    /// Says in their place why the rule fires or does not, or the hits again. The card may want another
    /// height then.
    void showReason(std::optional<RuleRemark> reason);

    /// Greys the card of a rule that is switched off; it says "off" in the place of its hits.
    void showOff(bool off);
    /// Marks the card as chosen, or no longer.
    void showChosen(bool chosen);

    /// Whether it lights up.
    [[nodiscard]] bool isLit() const;
    /// Lets so many seconds pass for its light.
    void advance(double seconds);

    /// The height of the card of an entry in a list of this width, while it shows this reason.
    [[nodiscard]] static int heightFor(const RuleEntry& entry, int width,
                                       const std::optional<RuleRemark>& reason = std::nullopt,
                                       const RuleRun& run = {});

    [[nodiscard]] FieldSection& trigger() { return trigger_; }
    [[nodiscard]] FieldSection& output() { return output_; }
    [[nodiscard]] RuleHeaderView& header() { return header_; }
    [[nodiscard]] RuleStatus& status() { return status_; }
    [[nodiscard]] MySwitch& onOffSwitch() { return onOff_; }
    [[nodiscard]] LearnButton& learnButton() { return learn_; }
    [[nodiscard]] RuleButtons& buttons() { return buttons_; }
    [[nodiscard]] CardLine& line() { return line_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void parentHierarchyChanged() override;

private:
    [[nodiscard]] juce::String whyNotSent() const;
    void showCount();
    void showFields();
    [[nodiscard]] juce::String hitsWords() const;
    void showStatus();
    void layOut();
    void paintFoundName(juce::Graphics& graphics) const;
    void paintGrip(juce::Graphics& graphics, juce::Rectangle<float> card) const;

    Binding<RuleEntry> data_;
    RuleViewActions actions_;
    MyDragAndDropForEachDragHandle handle_;
    RuleHeaderView header_;
    RuleStatus status_;
    CardLine line_;
    MySwitch onOff_;
    LearnButton learn_;
    SectionLabel triggerLabel_;
    FieldSection trigger_;
    SectionLabel outputLabel_;
    FieldSection output_;
    RuleButtons buttons_;
    std::optional<RuleHits> hits_;  ///< nothing before they were shown
    std::optional<RuleRemark> reason_;
    CardContent content_;
    bool inOneLine_ = false;
    Found found_;
    bool off_ = false;
    bool chosen_ = false;
    double light_ = 0;     ///< for how many seconds it is still seen
    bool wasLit_ = false;  ///< when it was drawn last
};

}  // namespace quillo
