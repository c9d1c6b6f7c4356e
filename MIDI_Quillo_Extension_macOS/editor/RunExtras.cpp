// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunExtras.hpp"

#include <cstdlib>
#include <string>

#include "editor/JuceText.hpp"
#include "editor/RunEdit.hpp"
#include "editor/RunOverlay.hpp"
#include "editor/RunText.hpp"

namespace quillo {

namespace {

constexpr const char* leavesTheBytes = "What is sent would leave 0 to 127.";

juce::String countText(std::size_t count) {
    return juce::String(count) + (count == 1 ? " rule" : " rules");
}

juce::String rangeText(TriggerEntryType type, int from, int to) {
    return juceText(valueText(type, static_cast<std::uint8_t>(from)) + " – " +
                    valueText(type, static_cast<std::uint8_t>(to)));
}

RunQuestion::Outcome outcomeOfRange(const RuleEntry& first, const RunBinding& run,
                                    const juce::StringArray& texts) {
    const auto type = first.trigger.type;
    const auto from = typedValue(type, texts[0].toStdString());
    const auto to = typedValue(type, texts[1].toStdString());
    if (!from || !to) {
        return {{}, waitsForNotes(type) ? "Notes read C1, C#1 or 36." : "Values go from 0 to 127.", {}};
    }
    if (!canWaitFor(first, run.get().rises, *from, *to)) {
        return {{}, leavesTheBytes, {}};
    }
    const auto count = std::size_t{1} + static_cast<std::size_t>(std::abs(*to - *from));
    const auto words = count == 1
                           ? juce::String("Stored as a plain rule.")
                           : "Stored as " + juce::String(count) + " plain rules: every host plays them.";
    return {countText(count), words,
            [setRange = run.setRange, from = *from, to = *to] { setRange(from, to); }};
}

/// A single value is the range to begin with; in the place of any value stand all of them.
RunQuestion rangeQuestion(const RuleEntry& first, const RunBinding& run) {
    const auto text = [type = first.trigger.type](std::size_t value) {
        return juceText(valueText(type, static_cast<std::uint8_t>(value)));
    };
    const auto from = comparedValue(first).value_or(0);
    const auto to = comparedValue(first) ? from + run.get().count - 1 : std::size_t{127};
    return {"Range", {{"From", text(from)}, {"To", text(to)}}, [first, run](const juce::StringArray& texts) {
                return outcomeOfRange(first, run, texts);
            }};
}

std::optional<TypedChoice> typedRangeChoice(const RuleEntry& first, const RunBinding& run,
                                            const juce::String& typed) {
    const auto range = typedRange(first.trigger.type, typed.toStdString());
    if (!range || !canWaitFor(first, run.get().rises, range->first, range->second)) {
        return std::nullopt;
    }
    return TypedChoice{rangeText(first.trigger.type, range->first, range->second),
                       [setRange = run.setRange, range = *range] { setRange(range.first, range.second); }};
}

/// A number without a sign goes up.
RunQuestion::Outcome outcomeOfOffset(const RuleEntry& first, const RunBinding& run,
                                     const juce::StringArray& texts) {
    const auto typed = texts[0].trim().toStdString();
    const auto offset = typedOffset(typed).has_value() ? typedOffset(typed) : typedOffset("+" + typed);
    const auto count = run.get().count;
    if (!offset) {
        return {{}, "A number goes up, or down with a minus: 12 or -5.", {}};
    }
    if (!canTranspose(first, count, *offset)) {
        return {{}, leavesTheBytes, {}};
    }
    const auto from = *comparedValue(first);
    const auto to = from + static_cast<int>(count) - 1;
    const auto type = first.trigger.type;
    return {countText(count),
            "Sends " + rangeText(type, from + *offset, to + *offset) + " for " + rangeText(type, from, to) +
                ".",
            [transpose = run.transpose, offset = *offset] { transpose(offset); }};
}

RunQuestion offsetQuestion(const RuleEntry& first, const RunBinding& run) {
    const auto offset = run.get().rises ? offsetOf(first) : 0;
    return {"From Trigger",
            {{"Add", (offset < 0 ? "" : "+") + juce::String(offset)}},
            [first, run](const juce::StringArray& texts) { return outcomeOfOffset(first, run, texts); }};
}

std::optional<TypedChoice> typedOffsetChoice(const RuleEntry& first, const RunBinding& run,
                                             const juce::String& typed) {
    const auto offset = typedOffset(typed.toStdString());
    if (!offset || !canTranspose(first, run.get().count, *offset)) {
        return std::nullopt;
    }
    return TypedChoice{juceText(offsetText(*offset)),
                       [transpose = run.transpose, offset] { transpose(*offset); }};
}

}  // namespace

MenuExtras rangeExtras(const Binding<RuleEntry>& rule, const RunBinding& run) {
    if (!canHaveRange(rule.get().trigger)) {
        return {};
    }
    const auto shown = [rule, run] {
        const auto count = run.get().count;
        return count > 1 ? juceText(rangeText(rule.get(), count)) : juce::String();
    };
    const auto ask = [rule, run](FieldView& field) {
        RunOverlay::open(field, rangeQuestion(rule.get(), run));
    };
    const auto typed = [rule, run](const juce::String& text) {
        return typedRangeChoice(rule.get(), run, text);
    };
    return {shown, MenuExtras::Row{.label = juceText("Range …"), .pick = ask}, typed, run.get().count > 1};
}

MenuExtras offsetExtras(const Binding<RuleEntry>& rule, const RunBinding& run, bool offersTrigger) {
    if (run.get().count == 1) {
        return {};
    }
    const auto shown = [rule, run] {
        return run.get().rises ? juceText(offsetText(offsetOf(rule.get()))) : juce::String();
    };
    const auto ask = [rule, run](FieldView& field) {
        RunOverlay::open(field, offsetQuestion(rule.get(), run));
    };
    const auto typed = [rule, run](const juce::String& text) {
        return typedOffsetChoice(rule.get(), run, text);
    };
    return {shown, MenuExtras::Row{juceText("From Trigger + …"), offersTrigger ? std::size_t{1} : 0, ask},
            typed, true};
}

}  // namespace quillo
