// SPDX-License-Identifier: GPL-3.0-or-later
#include <exception>
#include <iostream>
#include <memory>
#include <string_view>

#include "hosts/clap/CLAPEditor.hpp"
#include "hosts/clap/CLAPExtensions.hpp"
#include "hosts/clap/CLAPPlugin.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using Size = EmbeddedEditor::Size;

constexpr double greatestScale = 16.0;

/// What `action` makes of the editor in the window; false when there is none or it throws.
template <class Action>
bool withView(const clap_plugin_t* plugin, Action&& action) noexcept {
    return CLAPPlugin::with(plugin, false, [&](CLAPInstance& instance) {
        return instance.editor != nullptr && std::forward<Action>(action)(instance.editor->view);
    });
}

bool isAPISupported(const clap_plugin_t* /*plugin*/, const char* api, bool isFloating) noexcept {
    return api != nullptr && api == std::string_view(CLAP_WINDOW_API_X11) && !isFloating;
}

bool getPreferredAPI(const clap_plugin_t* /*plugin*/, const char** api, bool* isFloating) noexcept {
    if (api == nullptr || isFloating == nullptr) {
        return false;
    }
    *api = CLAP_WINDOW_API_X11;
    *isFloating = false;
    return true;
}

/// Nobody shows the user more than that nothing opens: why stands on the error stream.
bool openEditor(CLAPInstance& instance) {
    try {
        if (const auto reason = EmbeddedEditor::whyNot()) {
            fatalError(*reason);
        }
        instance.editor = std::make_shared<CLAPEditor>(instance);
        return true;
    } catch (const std::exception& error) {
        std::cerr << "MIDI Quillo: the editor cannot be opened: " << escapedLines(wordsOf(error)) << '\n';
        return false;
    }
}

bool create(const clap_plugin_t* plugin, const char* api, bool isFloating) noexcept {
    return CLAPPlugin::with(plugin, false, [&](CLAPInstance& instance) {
        return isAPISupported(plugin, api, isFloating) && !instance.editor && openEditor(instance);
    });
}

void destroy(const clap_plugin_t* plugin) noexcept {
    CLAPPlugin::with(plugin, false, [](CLAPInstance& instance) {
        instance.editor.reset();
        return true;
    });
}

bool setScale(const clap_plugin_t* plugin, double scale) noexcept {
    return withView(plugin, [scale](EmbeddedEditor& view) {
        const bool makesSense = scale > 0.0 && scale <= greatestScale;
        if (makesSense) {
            view.setScale(scale);
        }
        return makesSense;
    });
}

bool getSize(const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height) noexcept {
    return withView(plugin, [&](EmbeddedEditor& view) {
        if (width == nullptr || height == nullptr) {
            return false;
        }
        const auto size = view.size();
        *width = size.width;
        *height = size.height;
        return true;
    });
}

bool canResize(const clap_plugin_t* /*plugin*/) noexcept {
    return true;
}

bool getResizeHints(const clap_plugin_t* /*plugin*/, clap_gui_resize_hints_t* hints) noexcept {
    if (hints == nullptr) {
        return false;
    }
    *hints = {.can_resize_horizontally = true,
              .can_resize_vertically = true,
              .preserve_aspect_ratio = false,
              .aspect_ratio_width = 0,
              .aspect_ratio_height = 0};
    return true;
}

bool adjustSize(const clap_plugin_t* plugin, std::uint32_t* width, std::uint32_t* height) noexcept {
    return withView(plugin, [&](EmbeddedEditor& view) {
        if (width == nullptr || height == nullptr) {
            return false;
        }
        const auto nearest = view.nearestTo({*width, *height});
        *width = nearest.width;
        *height = nearest.height;
        return true;
    });
}

bool setSize(const clap_plugin_t* plugin, std::uint32_t width, std::uint32_t height) noexcept {
    return withView(plugin, [&](EmbeddedEditor& view) {
        const Size size{width, height};
        view.setSize(view.nearestTo(size));
        return view.size() == size;
    });
}

bool setParent(const clap_plugin_t* plugin, const clap_window_t* window) noexcept {
    return withView(plugin, [&](EmbeddedEditor& view) {
        if (window == nullptr || !isAPISupported(plugin, window->api, false) || window->x11 == 0) {
            return false;
        }
        view.attachTo(window->x11);
        return true;
    });
}

bool setTransient(const clap_plugin_t* /*plugin*/, const clap_window_t* /*window*/) noexcept {
    return false;
}

void suggestTitle(const clap_plugin_t* /*plugin*/, const char* /*title*/) noexcept {}

bool show(const clap_plugin_t* plugin) noexcept {
    return withView(plugin, [](EmbeddedEditor& view) {
        view.setVisible(true);
        return true;
    });
}

bool hide(const clap_plugin_t* plugin) noexcept {
    return withView(plugin, [](EmbeddedEditor& view) {
        view.setVisible(false);
        return true;
    });
}

void onTimer(const clap_plugin_t* plugin, clap_id timer) noexcept {
    CLAPPlugin::with(plugin, false, [timer](CLAPInstance& instance) {
        if (instance.editor && instance.editor->timer.is(timer)) {
            instance.idle();
        }
        return true;
    });
}

constexpr clap_plugin_gui_t gui{.is_api_supported = &isAPISupported,
                                .get_preferred_api = &getPreferredAPI,
                                .create = &create,
                                .destroy = &destroy,
                                .set_scale = &setScale,
                                .get_size = &getSize,
                                .can_resize = &canResize,
                                .get_resize_hints = &getResizeHints,
                                .adjust_size = &adjustSize,
                                .set_size = &setSize,
                                .set_parent = &setParent,
                                .set_transient = &setTransient,
                                .suggest_title = &suggestTitle,
                                .show = &show,
                                .hide = &hide};

constexpr clap_plugin_timer_support_t timerSupport{.on_timer = &onTimer};

}  // namespace

const clap_plugin_gui_t& clapGUI() {
    return gui;
}

const clap_plugin_timer_support_t& clapTimerSupport() {
    return timerSupport;
}

}  // namespace quillo
