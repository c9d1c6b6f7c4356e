// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2UIInstance.hpp"

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

constexpr const char* noAccess =
    "This host does not let the editor reach the plug-in (it grants no LV2 instance access). "
    "The project's rules run all the same. "
    "To edit them here, load MIDI Quillo as a CLAP or VST3 plug-in; or edit them in another host.";

constexpr const char* otherVersion =
    "MIDI Quillo was upgraded while this host was running: the editor and the plug-in that is at work are of "
    "different versions. The project's rules run all the same. To edit them, save the project, "
    "close the host and start it again.";

/// Why no editor can be shown, if that is so.
void requireWindow(const LV2UIFeatures& features) {
    if (features.parent == 0) {
        fatalError("the host gives the editor no window");
    }
    if (const auto reason = EmbeddedEditor::whyNot()) {
        fatalError(*reason);
    }
}

}  // namespace

LV2UIInstance::LV2UIInstance(const LV2UIFeatures& features)
    : unit_(unitFor(features)), editor_(unit_, features.scale) {
    editor_.attachTo(features.parent);
    editor_.setVisible(true);
    if (features.resize != nullptr && features.resize->ui_resize != nullptr) {
        const auto size = editor_.size();
        features.resize->ui_resize(features.resize->handle, static_cast<int>(size.width),
                                   static_cast<int>(size.height));
    }
}

/// Throws when no editor can be shown.
EditorUnit& LV2UIInstance::unitFor(const LV2UIFeatures& features) {
    requireWindow(features);
    if (features.instance != nullptr && features.instance->isOfThisVersion()) {
        return *features.instance->unit;
    }
    return outOfReach_.emplace(features.instance == nullptr ? noAccess : otherVersion);
}

}  // namespace quillo
