// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Fonts.hpp"

#include <cmath>
#include <initializer_list>

namespace quillo {
namespace {

const juce::StringArray& installedTypefaces() {
    static const auto names = juce::Font::findAllTypefaceNames();
    return names;
}

juce::String firstInstalled(std::initializer_list<const char*> wanted, const juce::String& otherwise) {
    for (const auto* name : wanted) {
        if (installedTypefaces().contains(name)) {
            return name;
        }
    }
    return otherwise;
}

const juce::String& textFamily() {
    static const auto family =
        firstInstalled({"Inter", "DejaVu Sans"}, juce::Font::getDefaultSansSerifFontName());
    return family;
}

const juce::String& monospacedFamily() {
    static const auto family =
        firstInstalled({"DejaVu Sans Mono"}, juce::Font::getDefaultMonospacedFontName());
    return family;
}

juce::Font signFont(float size) {
    static const auto family = firstInstalled({"DejaVu Sans"}, textFamily());
    return juce::Font(family, size, juce::Font::plain).withPointHeight(size);
}

/// Inter has a weight between regular and bold, which suits light text on dark ground.
const juce::String& boldStyle() {
    static const auto style = [] {
        const auto styles = juce::Font::findAllTypefaceStyles(textFamily());
        return styles.contains("Semi Bold") ? juce::String("Semi Bold") : juce::String("Bold");
    }();
    return style;
}

}  // namespace

juce::Font textFont(float size, bool bold) {
    return juce::Font(textFamily(), bold ? boldStyle() : juce::String("Regular"), size).withPointHeight(size);
}

juce::Font monospacedFont(float size) {
    return juce::Font(monospacedFamily(), size, juce::Font::plain).withPointHeight(size);
}

int textWidth(const juce::String& text, float size, bool bold) {
    return static_cast<int>(std::ceil(textFont(size, bold).getStringWidthFloat(text)));
}

void drawLine(juce::Graphics& graphics, const juce::String& text, juce::Rectangle<int> area, float size,
              juce::Colour colour) {
    constexpr juce::juce_wchar sharp = 0x266F;
    const auto place = text.indexOfChar(sharp);
    graphics.setColour(colour);
    graphics.setFont(textFont(size));
    if (place < 0 || textWidth(text, size) > area.getWidth()) {
        graphics.drawText(text, area, juce::Justification::centredLeft, true);
        return;
    }
    juce::AttributedString line;
    line.setJustification(juce::Justification::centredLeft);
    line.setWordWrap(juce::AttributedString::none);
    line.append(text, textFont(size), colour);
    line.setFont({place, place + 1}, signFont(size));
    line.draw(graphics, area.toFloat());
}

juce::String requireTypefaces() {
    return requireTypefaces(installedTypefaces());
}

juce::String requireTypefaces(const juce::StringArray& installed) {
    if (!installed.isEmpty()) {
        return {};
    }
    return "There is no typeface on this machine, so that no text can be drawn: install the packages "
           "fonts-inter and fonts-dejavu-core.";
}

}  // namespace quillo
