// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/base/smartpointer.h>

namespace quillo {

/// What a host finds in the binary: the factory of JUCE's wrapper, but for two things. A component leaves it
/// as a `PlugInComponent`, and an instance that cannot be made is an error code: no exception reaches the
/// host.
///
/// The host's main thread. Counts its references, and begins with one.
class PlugInFactory final : public Steinberg::IPluginFactory3 {
public:
    explicit PlugInFactory(const Steinberg::IPtr<Steinberg::IPluginFactory3>& wrappers);

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override;
    Steinberg::uint32 PLUGIN_API addRef() override;
    Steinberg::uint32 PLUGIN_API release() override;

    /// `kOutOfMemory` or `kInternalError`, and no object, where making one throws.
    Steinberg::tresult PLUGIN_API createInstance(Steinberg::FIDString classId, Steinberg::FIDString id,
                                                 void** object) override;

    Steinberg::tresult PLUGIN_API getFactoryInfo(Steinberg::PFactoryInfo* info) override;
    Steinberg::int32 PLUGIN_API countClasses() override;
    Steinberg::tresult PLUGIN_API getClassInfo(Steinberg::int32 index, Steinberg::PClassInfo* info) override;
    Steinberg::tresult PLUGIN_API getClassInfo2(Steinberg::int32 index,
                                                Steinberg::PClassInfo2* info) override;
    Steinberg::tresult PLUGIN_API getClassInfoUnicode(Steinberg::int32 index,
                                                      Steinberg::PClassInfoW* info) override;
    Steinberg::tresult PLUGIN_API setHostContext(Steinberg::FUnknown* context) override;

private:
    ~PlugInFactory() = default;

    Steinberg::tresult make(Steinberg::FIDString classId, Steinberg::FIDString id, void** object);

    Steinberg::IPtr<Steinberg::IPluginFactory3> wrappers_;
    std::atomic<Steinberg::uint32> references_{1};
};

}  // namespace quillo
