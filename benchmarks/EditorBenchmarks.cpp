// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"
#include "programs/editor/DemoRules.hpp"
#include "programs/editor/Desk.hpp"

namespace quillo::bench {

namespace {

/// As it opens, in points.
constexpr int width = 500;
constexpr int height = 250;

/// An editor that was opened, at its opening size.
struct OpenEditor {
    explicit OpenEditor(std::vector<Rule> rules) : desk(std::move(rules)) {
        desk.view().setSize(width, height);
    }

    juce::ScopedJuceInitialiser_GUI juce;
    Desk desk;
    juce::Image screen{juce::Image::ARGB, width, height, true};

    void draw() {
        juce::Graphics graphics(screen);
        desk.view().paintEntireComponent(graphics, true);
    }
};

std::string rows(std::size_t rules) {
    return std::to_string(rules) + " rules";
}

Step open(std::size_t rules) {
    return [rules] {
        OpenEditor editor(manyRules(rules));
        editor.draw();
    };
}

/// The arrow keys on the first card's delay: up, down, up...
Step edit(const std::vector<Rule>& rules) {
    return [editor = std::make_shared<OpenEditor>(rules), up = false]() mutable {
        auto& view = editor->desk.view();
        auto& delay = view.card(view.editor().rules().front().id)->output().fields().back()->field();
        up = !up;
        delay.keyPressed(juce::KeyPress(up ? juce::KeyPress::upKey : juce::KeyPress::downKey));
    };
}

/// Down by 20 points and drawn, and from the top again at the end.
Step scroll(std::size_t rules, int step) {
    return [editor = std::make_shared<OpenEditor>(manyRules(rules)), position = 0, step]() mutable {
        auto& list = editor->desk.view().list();
        position += step;
        list.setScrollPosition(position);
        if (list.scrollPosition() != position) {
            position = 0;
        }
        editor->draw();
    };
}

}  // namespace

void addEditorBenchmarks() {
    const Section opening("Opening the editor and drawing it", "opening");
    opening.addFloor("no rules", 1, [] { return open(0); });
    opening.addRow(rows(10), 1, [] { return open(10); });
    opening.addRow(rows(1000), 1, [] { return open(1000); });

    const Section edits("An edit, from the key to the installed rules", "edit");
    edits.addFloor("one rule", 1, [] { return edit(manyRules(1)); });
    edits.addRow(rows(10), 1, [] { return edit(manyRules(10)); });
    edits.addRow(rows(1000), 1, [] { return edit(manyRules(1000)); });
    edits.addRow("a run of 128 rules", 1, [] { return edit(manyRuns(1, 128)); });
    edits.addRow("10000 rules in 200 runs", 1, [] { return edit(manyRuns(200, 50)); });

    constexpr int points = 20;
    const Section frames("A frame of scrolling", "frame");
    frames.addFloor("drawn where it is, 10 rules", 1, [] { return scroll(10, 0); });
    frames.addRow(rows(10), 1, [] { return scroll(10, points); });
    frames.addRow(rows(1000), 1, [] { return scroll(1000, points); });
}

}  // namespace quillo::bench
