// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/EditorDouble.hpp"

#include "hosts/auv3/MainThread.hpp"

namespace quillo {

namespace test {

namespace {

class NativeEditorDouble final : public NativeEditor {
public:
    NativeEditorDouble(AudioUnitViewController& controller, void* parentView) {
        editorDouble().open = true;
        editorDouble().parentView = parentView;
        editorDouble().controller = &controller;
    }
    ~NativeEditorDouble() override {
        editorDouble().open = false;
        editorDouble().diedOnMainThread = isMainThread();
    }
    NativeEditorDouble(const NativeEditorDouble&) = delete;
    NativeEditorDouble& operator=(const NativeEditorDouble&) = delete;

    void setSize(int width, int height) override {
        editorDouble().width = width;
        editorDouble().height = height;
    }
};

}  // namespace

EditorDouble& editorDouble() {
    static EditorDouble last;
    return last;
}

}  // namespace test

std::unique_ptr<NativeEditor> makeNativeEditor(AudioUnitViewController& controller, void* parentView) {
    if (test::editorDouble().fails) {
        throw std::runtime_error("no editor can be made");
    }
    return std::make_unique<test::NativeEditorDouble>(controller, parentView);
}

}  // namespace quillo
