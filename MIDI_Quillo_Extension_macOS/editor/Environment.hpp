// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <any>
#include <map>
#include <typeindex>
#include <utility>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Palette.hpp"

/// Values that are handed down the tree of views: a view sets them for all that lies below it, and a
/// view that draws looks them up along its parents. [main] only.
///
///     class Card : public juce::Component, public EnvironmentScope { ... };
///     card.set<MyPrimaryColor>(palette.channelInput);
///     g.setColour(displayColour(environment<MyPrimaryColor>(*this)));
namespace quillo {

/// The editor's colours.
struct PaletteKey {
    using Value = Palette;
    static Value defaultValue() { return {}; }
};

/// The colours that a control is currently drawn with.
struct MyPrimaryColor {
    using Value = MyRGB;
    static Value defaultValue() { return Palette().primaryText; }
};
struct MySecondaryColor {
    using Value = MyRGB;
    static Value defaultValue() { return Palette().secondaryText; }
};
struct MyBackground {
    using Value = MyRGB;
    static Value defaultValue() { return Palette().background; }
};

/// How much room there is, by the width of the editor.
enum class MySizeCategory { small, medium, large, extraLarge };

struct MySizeCategoryKey {
    using Value = MySizeCategory;
    static Value defaultValue() { return MySizeCategory::medium; }
};

/// How many clicks in a row the content of a `MyClickOverlay` has had.
struct MyClickOverlayClicks {
    using Value = int;
    static Value defaultValue() { return 0; }
};

/// A view that sets values for what lies below it.
class EnvironmentScope {
public:
    virtual ~EnvironmentScope() = default;

    template <class Key>
    void set(Key::Value value) {
        values_.insert_or_assign(std::type_index(typeid(Key)), std::any(std::move(value)));
    }

    /// The value set here, or null.
    template <class Key>
    [[nodiscard]] const Key::Value* find() const {
        const auto found = values_.find(std::type_index(typeid(Key)));
        return found != values_.end() ? std::any_cast<typename Key::Value>(&found->second) : nullptr;
    }

private:
    std::map<std::type_index, std::any> values_;
};

/// The value that the nearest scope around `view`, the view itself included, has set; the key's default when
/// none has.
template <class Key>
[[nodiscard]] Key::Value environment(const juce::Component& view) {
    for (const auto* component = &view; component != nullptr; component = component->getParentComponent()) {
        if (const auto* scope = dynamic_cast<const EnvironmentScope*>(component)) {
            if (const auto* value = scope->find<Key>()) {
                return *value;
            }
        }
    }
    return Key::defaultValue();
}

/// The colour as it is drawn: each part divided by 255, fully opaque.
[[nodiscard]] juce::Colour displayColour(MyRGB colour);

/// How much room a width in points is: small below 400, medium below 640, large below 960.
[[nodiscard]] MySizeCategory sizeCategory(int width);

}  // namespace quillo
