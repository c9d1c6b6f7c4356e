// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>

#include "editor/Palette.hpp"

/// The measures that the editor's views share, in points, and the shades that stand around the palette's
/// colours.
namespace quillo::style {

/// Sizes of text.
inline constexpr float captionText = 10;
inline constexpr float valueText = 11.5F;
inline constexpr float buttonText = 11;
inline constexpr float titleText = 12.5F;
inline constexpr float logText = 10.5F;

/// Roundings.
inline constexpr float fieldCorner = 5;
inline constexpr float buttonCorner = 6;
inline constexpr float cardCorner = 8;

/// Fields: a caption over a box with an underline.
inline constexpr int captionHeight = 14;
inline constexpr int boxHeight = 24;
inline constexpr int fieldPadding = 7;
inline constexpr int fieldLeastWidth = 44;
inline constexpr int chevronSize = 10;
inline constexpr int chevronGap = 4;
inline constexpr float underline = 2;

/// Buttons.
inline constexpr int buttonHeight = 21;
inline constexpr int buttonPadding = 10;
inline constexpr int iconButtonSize = 28;
inline constexpr int iconSize = 16;

/// Lists of cards.
inline constexpr int listMargin = 12;
inline constexpr int listTopMargin = 10;
inline constexpr int cardGap = 7;
inline constexpr int scrollBarWidth = 8;
inline constexpr int dragHandleWidth = 22;

/// Cards: the name, the sections with their labels, the buttons, and what lies between them.
inline constexpr int fieldGap = 5;
inline constexpr int cardPadding = 10;
inline constexpr int cardTop = 3;
inline constexpr int cardBottom = 7;
inline constexpr int cardHeaderHeight = 26;
/// A card in one line, and the most that its name takes there.
inline constexpr int cardInOneLine = 26;
inline constexpr int nameInOneLine = 150;
/// Between the parts of the title line.
inline constexpr int titleGap = 8;
inline constexpr int sectionGap = 6;
inline constexpr int columnGap = 16;
inline constexpr int sectionLabelWidth = 68;
inline constexpr int sectionLabelHeight = 16;
inline constexpr int buttonsGap = 8;
/// The least widths of a card's content for trigger and message side by side, for labels beside the fields,
/// and for the buttons in the title line.
inline constexpr int cardOfColumns = 680;
inline constexpr int cardOfRows = 470;
inline constexpr int narrowCard = 330;

/// The bars above and below the list.
inline constexpr int headerHeight = 45;
inline constexpr int logBarHeight = 30;
inline constexpr int barPadding = 12;

/// Logs.
inline constexpr int logRowHeight = 15;

/// Menus.
inline constexpr int menuRowHeight = 22;
inline constexpr int menuMargin = 4;

inline constexpr float focusRing = 2;
/// How much is left of a control that cannot be used.
inline constexpr float disabledAlpha = 0.4F;
/// How much is left of a rule that is switched off: it can still be edited.
inline constexpr float offAlpha = 0.45F;

/// `colour` with `steps` added to each part: surfaces lie on one another by getting lighter.
[[nodiscard]] constexpr MyRGB lifted(MyRGB colour, int steps) {
    const auto lift = [steps](std::uint8_t part) {
        return static_cast<std::uint8_t>(std::clamp(part + steps, 0, 255));
    };
    return {lift(colour.r), lift(colour.g), lift(colour.b)};
}

/// `colour` on its way to another one, so many percent of it.
[[nodiscard]] constexpr MyRGB mixed(MyRGB colour, MyRGB other, int percent) {
    const auto mix = [percent](std::uint8_t from, std::uint8_t to) {
        return static_cast<std::uint8_t>(from + (to - from) * percent / 100);
    };
    return {mix(colour.r, other.r), mix(colour.g, other.g), mix(colour.b, other.b)};
}

/// What names a value: a little darker than the value itself. The secondary colours are too dark for small
/// text.
[[nodiscard]] constexpr MyRGB caption(MyRGB primary, MyRGB secondary) {
    return mixed(secondary, primary, 80);
}

/// The line around a card, a box, a button or a panel, and the thumb of a scroll bar: the palette's borders,
/// lifted until they are seen on every surface; and the same under the pointer.
[[nodiscard]] constexpr MyRGB edge(const Palette& palette) {
    return lifted(palette.borders, 44);
}
[[nodiscard]] constexpr MyRGB litEdge(const Palette& palette) {
    return lifted(palette.borders, 100);
}

/// The row of a log that is chosen.
[[nodiscard]] constexpr MyRGB chosen(const Palette& palette) {
    return mixed(palette.background, palette.triggerInput, 22);
}

/// The strip below the grip of a card that is chosen.
[[nodiscard]] constexpr MyRGB chosenGrip(const Palette& palette) {
    return mixed(palette.background, palette.channelInput, 30);
}

/// What stops things: the line around its button, and its words.
inline constexpr MyRGB alarmEdge{243, 117, 117};
inline constexpr MyRGB alarmText{255, 156, 156};

/// What was found: its ground, and the line around the card that is looked at.
inline constexpr MyRGB found{92, 72, 16};
inline constexpr MyRGB foundEdge{214, 178, 74};
/// How much is left of a card on which nothing was found.
inline constexpr float notFoundAlpha = 0.35F;

/// Says of a rule that it did not fire.
inline constexpr MyRGB passedOver{214, 168, 192};

/// A card on the editor's background.
inline constexpr int cardLift = 5;
/// The line that parts a card's handle from its content.
inline constexpr int separatorLift = 16;
/// A field's box on its card.
inline constexpr int boxLift = 8;
/// A button under the pointer: no more, as text must stay readable in every colour.
inline constexpr int buttonHoverLift = 9;
/// A menu.
inline constexpr int menuLift = 12;

}  // namespace quillo::style
