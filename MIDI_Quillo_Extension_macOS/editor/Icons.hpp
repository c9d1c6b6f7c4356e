// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/// The editor's drawings: SVG files in `assets`, compiled in. [main] only.
namespace quillo {

enum class IconName {
    dragHandle,
    pickerOpen,
    arrowDown,
    arrowUp,
    clear,
    oneLine,
    search,
    fields,
    more,
    exportFile,
    importFile,
    folder,
    preset,
    undo,
    redo,
    logo
};

/// Draws an icon as large as fits into `area`, in its middle. An icon is one shape, which takes the colour;
/// the logo keeps its own colours.
void drawIcon(juce::Graphics& graphics, IconName icon, juce::Rectangle<float> area, juce::Colour colour);

}  // namespace quillo
