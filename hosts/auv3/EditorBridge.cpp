// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/EditorBridge.hpp"

#include <utility>

#include "hosts/auv3/Failure.hpp"
#include "hosts/auv3/MainThread.hpp"
#include "hosts/auv3/NativeEditor.hpp"

namespace quillo {

/// What belongs to the main thread, the controller's factory apart.
struct EditorBridge::Window {
    std::shared_ptr<AudioUnitViewController> controller;
    std::unique_ptr<NativeEditor> editor{};
};

EditorBridge::EditorBridge()
    : mainQueue_(processMainQueue()),
      window_(std::make_shared<Window>(Window{std::make_shared<AudioUnitViewController>(mainQueue_)})) {}

EditorBridge::~EditorBridge() {
    if (!mainQueue_.isMainThread()) {
        static_cast<void>(attempt([this] { mainQueue_.async([window = std::move(window_)] {}); }));
    }
}

void EditorBridge::adopt(UnitBridge& unit) noexcept {
    static_cast<void>(attempt([&] {
        unit.setTellUser(window_->controller->userTeller());
        window_->controller->adoptAudioUnit(unit.unit());
    }));
}

void EditorBridge::viewDidLoad(void* view) noexcept {
    static_cast<void>(attempt([&] { window_->editor = makeNativeEditor(*window_->controller, view); }));
    static_cast<void>(attempt([&] { window_->controller->viewDidLoad(); }));
}

void EditorBridge::viewDidLayout(double width, double height) noexcept {
    if (window_->editor) {
        static_cast<void>(
            attempt([&] { window_->editor->setSize(static_cast<int>(width), static_cast<int>(height)); }));
    }
}

AudioUnitViewController& EditorBridge::controller() noexcept {
    return *window_->controller;
}

}  // namespace quillo
