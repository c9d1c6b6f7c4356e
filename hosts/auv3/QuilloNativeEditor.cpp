// SPDX-License-Identifier: GPL-3.0-or-later
#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EditorShell.hpp"
#include "editor/PresetExchange.hpp"
#include "hosts/auv3/Failure.hpp"
#include "hosts/auv3/NativeEditor.hpp"
#include "hosts/auv3/PresetPanels.hpp"

namespace quillo {

namespace {

class QuilloNativeEditor final : public NativeEditor {
public:
    QuilloNativeEditor(AudioUnitViewController& controller, void* parentView)
        : parentView_(parentView), shell_(controller) {
        view_.setFilePanels({[this] { importPreset(); }, [this] { exportPreset(); }});
        view_.addToDesktop(0, parentView);
        view_.setVisible(true);
    }

    void setSize(int width, int height) override { view_.setBounds(0, 0, width, height); }

private:
    /// The editor may be gone when the user has chosen.
    using View = juce::Component::SafePointer<QuilloView>;

    void importPreset() {
        choosePresetToRead(
            parentView_, [view = View(&view_)](const std::string& name, const std::function<Data()>& read) {
                if (view != nullptr) {
                    static_cast<void>(attempt([&] { quillo::importPreset(name, read, view->editor()); }));
                }
            });
    }

    void exportPreset() {
        const auto name = std::string(defaultPresetName) + presetFileExtension;
        choosePresetToWrite(parentView_, name, [view = View(&view_)](const auto& write) {
            if (view != nullptr) {
                static_cast<void>(attempt([&] { quillo::exportPreset(write, view->editor()); }));
            }
        });
    }

    void* parentView_;
    juce::ScopedJuceInitialiser_GUI juce_;
    EditorShell shell_;
    QuilloView& view_ = shell_.view();
};

}  // namespace

std::unique_ptr<NativeEditor> makeNativeEditor(AudioUnitViewController& controller, void* parentView) {
    return std::make_unique<QuilloNativeEditor>(controller, parentView);
}

}  // namespace quillo
