// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Binding.hpp"
#include "editor/Environment.hpp"
#include "editor/FieldSection.hpp"
#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "editor/RuleButtons.hpp"
#include "editor/RuleHeaderView.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// What a rule card reads and what it tells its owner.
struct RuleViewActions {
    std::function<void(TriggerEntryType)> onTriggerTypeChange;
    std::function<void(const MIDIRuleType&)> onOutputTypeChange;
    std::function<void()> onDuplicate;
    std::function<void()> onDelete;
    std::function<void()> onSend;
};

/// The card of one rule: the grip it is dragged by, the name, the trigger, the message and the buttons. Every
/// field edits the rule's entry through the binding; the card keeps no copy. [main] only.
class RuleView final : public juce::Component, public EnvironmentScope {
public:
    RuleView(Binding<RuleEntry> data, RuleViewActions actions);

    /// The entry has changed: other fields are made where its types are others.
    void refresh();

    /// The height of the card of an entry in a list of this width.
    [[nodiscard]] static int heightFor(const RuleEntry& entry, int width);

    [[nodiscard]] FieldSection& trigger() { return trigger_; }
    [[nodiscard]] FieldSection& output() { return output_; }
    [[nodiscard]] RuleHeaderView& header() { return header_; }
    [[nodiscard]] RuleButtons& buttons() { return buttons_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void parentHierarchyChanged() override;

private:
    /// What decides which fields there are and what they offer.
    struct Shape {
        TriggerEntryType trigger;
        OutputEntryType output;
        bool operator==(const Shape&) const = default;
    };

    [[nodiscard]] Shape shape() const;
    void makeFields();

    Binding<RuleEntry> data_;
    RuleViewActions actions_;
    Shape shape_;
    MyDragAndDropForEachDragHandle handle_;
    RuleHeaderView header_;
    FieldSection trigger_;
    FieldSection output_;
    RuleButtons buttons_;
};

}  // namespace quillo
