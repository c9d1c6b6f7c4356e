// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

#include <pluginterfaces/base/ibstream.h>
#include <pluginterfaces/base/smartpointer.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>

#include "hosts/vst3/QuilloProcessor.hpp"

namespace quillo {

/// The component and audio processor of JUCE's wrapper as a host sees them, with what the wrapper cannot say
/// for itself: that a state was not restored or not saved, and that a sample rate is rejected. The events of
/// a block go through `IncomingEvents` and `OutgoingEvents`. Every other interface is the wrapper's own.
///
/// Counts its references, and begins with one.
class PlugInComponent final : public Steinberg::Vst::IComponent, public Steinberg::Vst::IAudioProcessor {
public:
    /// Nothing for an object that is no component of ours.
    [[nodiscard]] static Steinberg::IPtr<PlugInComponent> around(Steinberg::FUnknown& made);

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override;
    Steinberg::uint32 PLUGIN_API addRef() override;
    Steinberg::uint32 PLUGIN_API release() override;

    /// `kResultFalse` when no rules were restored: the rules stay as they were, and the editor shows why,
    /// unless the host has kept nothing at all.
    Steinberg::tresult PLUGIN_API setState(Steinberg::IBStream* state) override;
    /// `kResultFalse` when the rules could not be written, or the stream does not take all of them.
    Steinberg::tresult PLUGIN_API getState(Steinberg::IBStream* state) override;
    /// `kResultFalse` when nothing can be rendered at the sample rate that was set up.
    Steinberg::tresult PLUGIN_API setActive(Steinberg::TBool state) override;
    /// A call without frames goes through the rules as well, unless the plug-in is inactive or nobody takes
    /// what they send: then what comes in is dropped, and what is due waits.
    ///
    /// `kInvalidArgument` for a block that is longer than announced, and longer than `leastFrames`. Nothing
    /// of it is rendered, and the notes that sound end in the next block. [render]
    Steinberg::tresult PLUGIN_API process(Steinberg::Vst::ProcessData& data) override;

    Steinberg::tresult PLUGIN_API initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult PLUGIN_API terminate() override;
    Steinberg::tresult PLUGIN_API getControllerClassId(Steinberg::TUID classId) override;
    Steinberg::tresult PLUGIN_API setIoMode(Steinberg::Vst::IoMode mode) override;
    Steinberg::int32 PLUGIN_API getBusCount(Steinberg::Vst::MediaType type,
                                            Steinberg::Vst::BusDirection direction) override;
    Steinberg::tresult PLUGIN_API getBusInfo(Steinberg::Vst::MediaType type,
                                             Steinberg::Vst::BusDirection direction, Steinberg::int32 index,
                                             Steinberg::Vst::BusInfo& bus) override;
    Steinberg::tresult PLUGIN_API getRoutingInfo(Steinberg::Vst::RoutingInfo& in,
                                                 Steinberg::Vst::RoutingInfo& out) override;
    Steinberg::tresult PLUGIN_API activateBus(Steinberg::Vst::MediaType type,
                                              Steinberg::Vst::BusDirection direction, Steinberg::int32 index,
                                              Steinberg::TBool state) override;
    Steinberg::tresult PLUGIN_API setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs,
                                                     Steinberg::int32 inputCount,
                                                     Steinberg::Vst::SpeakerArrangement* outputs,
                                                     Steinberg::int32 outputCount) override;
    Steinberg::tresult PLUGIN_API getBusArrangement(Steinberg::Vst::BusDirection direction,
                                                    Steinberg::int32 index,
                                                    Steinberg::Vst::SpeakerArrangement& arrangement) override;
    Steinberg::tresult PLUGIN_API canProcessSampleSize(Steinberg::int32 sampleSize) override;
    Steinberg::uint32 PLUGIN_API getLatencySamples() override;
    /// `kInvalidArgument` when blocks of more than `mostFrames` are announced.
    Steinberg::tresult PLUGIN_API setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
    Steinberg::tresult PLUGIN_API setProcessing(Steinberg::TBool state) override;
    Steinberg::uint32 PLUGIN_API getTailSamples() override;

private:
    /// For so many frames JUCE makes room, whatever is announced: some hosts announce too little.
    static constexpr Steinberg::int32 leastFrames = 8192;
    static constexpr Steinberg::int32 mostFrames = 1 << 20;
    /// Shorter than any block.
    static constexpr Steinberg::int32 afterAFailure = -1;

    PlugInComponent(const Steinberg::IPtr<Steinberg::Vst::IComponent>& component,
                    const Steinberg::IPtr<Steinberg::Vst::IAudioProcessor>& processor,
                    QuilloProcessor& quillo);
    ~PlugInComponent() = default;

    template <class Call>
    [[nodiscard]] Steinberg::tresult inTheWrapper(const Call& call);

    Steinberg::IPtr<Steinberg::Vst::IComponent> component_;
    Steinberg::IPtr<Steinberg::Vst::IAudioProcessor> processor_;
    QuilloProcessor& quillo_;            ///< of the component, which keeps it
    Steinberg::int32 longestBlock_ = 0;  ///< in frames, for which JUCE has made room
    bool isActive_ = false;
    std::atomic<Steinberg::uint32> references_{1};
};

}  // namespace quillo
