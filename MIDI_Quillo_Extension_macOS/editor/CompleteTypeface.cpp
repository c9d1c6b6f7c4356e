// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CompleteTypeface.hpp"

#include <fontconfig/fontconfig.h>

#include <optional>
#include <span>

namespace quillo {

namespace {

template <auto Destroy>
struct Destroyer {
    template <class Thing>
    void operator()(Thing* thing) const {
        Destroy(thing);
    }
};
using Pattern = std::unique_ptr<FcPattern, Destroyer<FcPatternDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, Destroyer<FcFontSetDestroy>>;

juce::String text(const FcPattern* font, const char* object, int index) {
    FcChar8* value = nullptr;
    const bool found = FcPatternGetString(font, object, index, &value) == FcResultMatch;
    return found ? juce::String::fromUTF8(reinterpret_cast<const char*>(value)) : juce::String();
}

bool isTrue(const FcPattern* font, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(font, object, 0, &value) == FcResultMatch && value == FcTrue;
}

bool draws(const FcPattern* font, juce::juce_wchar character) {
    FcCharSet* letters = nullptr;
    return isTrue(font, FC_OUTLINE) && !isTrue(font, FC_COLOR) &&
           FcPatternGetCharSet(font, FC_CHARSET, 0, &letters) == FcResultMatch &&
           FcCharSetHasChar(letters, static_cast<FcChar32>(character)) == FcTrue;
}

/// The first of a font's names in several languages that is among `known`; empty when none is.
juce::String nameAmong(const juce::StringArray& known, const FcPattern* font, const char* object) {
    for (int index = 0;; ++index) {
        const auto name = text(font, object, index);
        if (name.isEmpty() || known.contains(name)) {
            return name;
        }
    }
}

/// Joins what stands around it, or chooses among its forms, and is not seen itself.
bool isUnseen(juce::juce_wchar character) {
    constexpr juce::juce_wchar zeroWidthSpace = 0x200B;
    constexpr juce::juce_wchar joiner = 0x200D;
    constexpr juce::juce_wchar firstSelector = 0xFE00;
    constexpr juce::juce_wchar lastSelector = 0xFE0F;
    return (character >= zeroWidthSpace && character <= joiner) ||
           (character >= firstSelector && character <= lastSelector);
}

}  // namespace

/// The typefaces of the machine, the closest to a font first.
class CompleteTypeface::Substitutes {
public:
    explicit Substitutes(const juce::Font& font) : families_(juce::Font::findAllTypefaceNames()) {
        const Pattern pattern(FcPatternCreate());
        const auto family = font.getTypefaceName().toStdString();
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
        FcPatternAddInteger(pattern.get(), FC_WEIGHT, font.isBold() ? FC_WEIGHT_DEMIBOLD : FC_WEIGHT_REGULAR);
        FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
        FcDefaultSubstitute(pattern.get());
        FcResult result = FcResultMatch;
        sorted_.reset(FcFontSort(nullptr, pattern.get(), FcFalse, nullptr, &result));
    }

    /// The closest font that draws the character.
    [[nodiscard]] std::optional<juce::Font> fontFor(juce::juce_wchar character) const {
        if (sorted_ == nullptr) {
            return std::nullopt;
        }
        for (const auto* font : std::span(sorted_->fonts, static_cast<std::size_t>(sorted_->nfont))) {
            const auto family =
                draws(font, character) ? nameAmong(families_, font, FC_FAMILY) : juce::String();
            if (family.isNotEmpty()) {
                const auto styles = juce::Font::findAllTypefaceStyles(family);
                const auto style = nameAmong(styles, font, FC_STYLE);
                return juce::Font(family, style.isEmpty() ? styles[0] : style, 1.0F);
            }
        }
        return std::nullopt;
    }

private:
    juce::StringArray families_;
    FontSet sorted_;
};

CompleteTypeface::CompleteTypeface(const juce::Font& font)
    : font_(font), substitutes_(std::make_unique<Substitutes>(font)) {
    // A name of its own, because JUCE keeps the letters it has drawn under their typeface's name.
    setCharacteristics(font.getTypefaceName() + " and others", font.getTypefaceStyle(),
                       font.getTypefacePtr()->getAscent(), ' ');
}

CompleteTypeface::~CompleteTypeface() = default;

bool CompleteTypeface::loadGlyphIfPossible(juce::juce_wchar character) {
    if (isUnseen(character)) {
        addGlyph(character, {}, 0);
        return true;
    }
    const auto substitute = substitutes_->fontFor(character);
    const bool ownLetter = !substitute || substitute->getTypefaceName() == font_.getTypefaceName();
    const auto own = font_.getTypefacePtr();
    const auto source = ownLetter ? own : substitute->getTypefacePtr();
    const auto scale = own->getHeightToPointsFactor() / source->getHeightToPointsFactor();
    juce::Array<int> numbers;
    juce::Array<float> ends;
    source->getGlyphPositions(juce::String::charToString(character), numbers, ends);
    juce::Path outline;
    source->getOutlineForGlyph(numbers[0], outline);
    outline.applyTransform(juce::AffineTransform::scale(scale));
    addGlyph(character, outline, ends[1] * scale);
    return true;
}

}  // namespace quillo
