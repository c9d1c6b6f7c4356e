// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2UI.hpp"

#include <algorithm>
#include <bit>
#include <exception>
#include <iostream>
#include <memory>
#include <string_view>

#include "engine/SharedBytes.hpp"
#include "hosts/lv2/LV2UIInstance.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

LV2UI_Handle instantiate(const LV2UI_Descriptor* /*descriptor*/, const char* /*plugin*/,
                         const char* /*bundle*/, LV2UI_Write_Function /*write*/,
                         LV2UI_Controller /*controller*/, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) noexcept {
    if (widget == nullptr) {
        return nullptr;
    }
    try {
        auto instance = std::make_unique<LV2UIInstance>(LV2UIFeatures(features));
        *widget = std::bit_cast<LV2UI_Widget>(instance->editor().window());
        return instance.release();
    } catch (const std::exception& error) {
        std::cerr << "MIDI Quillo: the editor cannot be opened: " << escapedLines(wordsOf(error)) << '\n';
        return nullptr;
    }
}

void cleanup(LV2UI_Handle handle) noexcept {
    const std::unique_ptr<LV2UIInstance> instance(static_cast<LV2UIInstance*>(handle));
}

/// The editor reaches the unit without the ports.
void portEvent(LV2UI_Handle /*handle*/, std::uint32_t /*port*/, std::uint32_t /*size*/,
               std::uint32_t /*format*/, const void* /*buffer*/) noexcept {}

/// This binary makes no long messages, which would free those that its views have let go of.
int idle(LV2UI_Handle handle) noexcept {
    if (handle != nullptr) {
        static_cast<LV2UIInstance*>(handle)->editor().idle();
    }
    SharedBytes::freeRetired();
    return 0;
}

/// The host's window has another size: 0 when the editor has it too now.
int resize(LV2UI_Feature_Handle handle, int width, int height) noexcept {
    if (handle == nullptr) {
        return 1;
    }
    auto& editor = static_cast<LV2UIInstance*>(handle)->editor();
    const auto pixels = [](int length) { return static_cast<std::uint32_t>(std::max(length, 0)); };
    editor.setSize(editor.nearestTo({pixels(width), pixels(height)}));
    return editor.size() == EmbeddedEditor::Size{pixels(width), pixels(height)} ? 0 : 1;
}

const void* extensionData(const char* name) noexcept {
    static constexpr LV2UI_Idle_Interface idleInterface{.idle = &idle};
    static constexpr LV2UI_Resize resizeInterface{.handle = nullptr, .ui_resize = &resize};
    const std::string_view asked = name == nullptr ? "" : name;
    if (asked == LV2_UI__idleInterface) {
        return &idleInterface;
    }
    return asked == LV2_UI__resize ? &resizeInterface : nullptr;
}

constexpr LV2UI_Descriptor descriptor{.URI = "urn:midi-quillo:lv2#ui",
                                      .instantiate = &instantiate,
                                      .cleanup = &cleanup,
                                      .port_event = &portEvent,
                                      .extension_data = &extensionData};

}  // namespace

const LV2UI_Descriptor* lv2UIDescriptorOf(std::uint32_t index) noexcept {
    return index == 0 ? &descriptor : nullptr;
}

}  // namespace quillo
