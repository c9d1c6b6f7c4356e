// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2UIInstance.hpp"

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

constexpr const char* outOfReach = "This host does not let the editor reach the plug-in (it grants no LV2 "
                                   "instance access). The project's rules run "
                                   "all the same. To edit them here, load MIDI Quillo as a CLAP or VST3 "
                                   "plug-in; or edit them in another host.";

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

LV2UIInstance::LV2UIInstance(const LV2UIFeatures& features) : editor_(unitFor(features), features.scale) {
    if (stranded_) {
        stranded_->controller().model()->setNotEditable(outOfReach);
    }
    editor_.attachTo(features.parent);
    editor_.setVisible(true);
    if (features.resize != nullptr && features.resize->ui_resize != nullptr) {
        const auto size = editor_.size();
        features.resize->ui_resize(features.resize->handle, static_cast<int>(size.width),
                                   static_cast<int>(size.height));
    }
}

/// Throws when no editor can be shown, before a unit is made for it.
HostedUnit& LV2UIInstance::unitFor(const LV2UIFeatures& features) {
    requireWindow(features);
    return features.hosted != nullptr ? *features.hosted : strandedUnit();
}

/// A preset that is imported into it is not kept either: the editor says why.
HostedUnit& LV2UIInstance::strandedUnit() {
    stranded_.emplace();
    stranded_->setOnEdit([] { fatalError(outOfReach); });
    return *stranded_;
}

}  // namespace quillo
