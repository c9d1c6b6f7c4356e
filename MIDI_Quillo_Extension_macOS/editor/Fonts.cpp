// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Fonts.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#ifdef QUILLO_FONTCONFIG
#include "editor/CompleteTypeface.hpp"
#endif

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

/// Inter has a weight between regular and bold, which suits light text on dark ground.
const juce::String& boldStyle() {
    static const auto style = [] {
        const auto styles = juce::Font::findAllTypefaceStyles(textFamily());
        return styles.contains("Semi Bold") ? juce::String("Semi Bold") : juce::String("Bold");
    }();
    return style;
}

/// The typefaces of all text, for as long as JUCE is in use.
class TextTypefaces final : private juce::DeletedAtShutdown {
public:
    ~TextTypefaces() override { clearSingletonInstance(); }

    [[nodiscard]] juce::Typeface::Ptr typeface(bool bold) const { return bold ? bold_ : regular_; }

    JUCE_DECLARE_SINGLETON_SINGLETHREADED_MINIMAL(TextTypefaces)

private:
    static juce::Typeface::Ptr make(const juce::String& style) {
        const juce::Font font(textFamily(), style, 1.0F);
#ifdef QUILLO_FONTCONFIG
        return new CompleteTypeface(font);
#else
        return font.getTypefacePtr();
#endif
    }

    juce::Typeface::Ptr regular_ = make("Regular");
    juce::Typeface::Ptr bold_ = make(boldStyle());
};
JUCE_IMPLEMENT_SINGLETON(TextTypefaces)

}  // namespace

juce::Font textFont(float size, bool bold) {
    return juce::Font(TextTypefaces::getInstance()->typeface(bold)).withPointHeight(size);
}

juce::Font monospacedFont(float size) {
    return juce::Font(monospacedFamily(), size, juce::Font::plain).withPointHeight(size);
}

int textWidth(const juce::String& text, float size, bool bold) {
    return static_cast<int>(std::ceil(textFont(size, bold).getStringWidthFloat(text)));
}

void drawLine(juce::Graphics& graphics, const juce::String& text, juce::Rectangle<int> area, float size,
              juce::Colour colour) {
    graphics.setColour(colour);
    graphics.setFont(textFont(size));
    graphics.drawText(text, area, juce::Justification::centredLeft, true);
}

juce::TextLayout inLines(const juce::String& text, int width, float size, juce::Colour colour,
                         juce::Justification justification) {
    juce::AttributedString attributed;
    attributed.append(text, textFont(size), colour);
    attributed.setJustification(justification);
    juce::TextLayout layout;
    layout.createLayout(attributed, static_cast<float>(std::max(1, width)));
    return layout;
}

juce::Rectangle<float> onBaseline(juce::Rectangle<int> area, const juce::Font& font,
                                  const juce::Font& beside) {
    const auto belowCentre = [](const juce::Font& of) { return of.getAscent() - of.getHeight() / 2; };
    return area.toFloat().translated(0, belowCentre(beside) - belowCentre(font));
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
