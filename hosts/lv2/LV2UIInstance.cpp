// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2UIInstance.hpp"

#include <bit>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <lv2/atom/atom.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

/// The data of the feature of that name; null when the host does not offer it.
template <class Data>
Data* find(const LV2_Feature* const* features, std::string_view name) {
    for (const auto* const* feature = features; feature != nullptr && *feature != nullptr; ++feature) {
        const auto& [offered, data] = **feature;
        if (offered != nullptr && offered == name) {
            return static_cast<Data*>(data);
        }
    }
    return nullptr;
}

/// How many pixels a point has, by the host's options; 1 when they do not say, or are invalid.
double scaleOf(const LV2_Options_Option* option, const LV2_URID_Map* map) {
    constexpr float greatest = 16.0F;
    if (map == nullptr || map->map == nullptr) {
        return 1.0;
    }
    const auto key = map->map(map->handle, LV2_UI__scaleFactor);
    const auto real = map->map(map->handle, LV2_ATOM__Float);
    for (; option != nullptr && option->key != 0; ++option) {
        if (option->key == key && option->type == real && option->size == sizeof(float)) {
            const auto scale = *static_cast<const float*>(option->value);
            return scale > 0.0F && scale <= greatest ? scale : 1.0;
        }
    }
    return 1.0;
}

/// Stands in an editor for a unit that it cannot reach, and says why. A preset that is imported is not kept
/// either: the same notice is the alert. [main]
class UnitOutOfReach final : public EditorUnit {
public:
    explicit UnitOutOfReach(std::string notice) : notice_(std::move(notice)) {
        model_->setNotEditable(notice_);
    }

    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return model_; }
    void viewDidLoad() override {}
    void onRulesChanged(std::vector<Rule> /*rules*/, RuleShelf /*shelf*/) override { fatalError(notice_); }
    void onInstantMessageClick(const RuleOutputVariantsV2& /*message*/) override { fatalError(notice_); }
    void tellUser(std::string message) override { model_->alert(std::move(message)); }
    void drain() override {}

private:
    std::string notice_;
    std::shared_ptr<QuilloModel> model_ = std::make_shared<QuilloModel>();
};

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

LV2UIFeatures::LV2UIFeatures(const LV2_Feature* const* features)
    : instance(LV2InstanceAccess::of(find<const void>(features, LV2_INSTANCE_ACCESS_URI))),
      parent(std::bit_cast<std::uintptr_t>(find<void>(features, LV2_UI__parent))),
      resize(find<const LV2UI_Resize>(features, LV2_UI__resize)),
      scale(scaleOf(find<const LV2_Options_Option>(features, LV2_OPTIONS__options),
                    find<const LV2_URID_Map>(features, LV2_URID__map))) {}

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
    outOfReach_ = std::make_shared<UnitOutOfReach>(features.instance == nullptr ? noAccess : otherVersion);
    return *outOfReach_;
}

}  // namespace quillo
