// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pluginterfaces/vst/ivstevents.h>

namespace quillo {

/// A list of events in front of the host's, for the length of one call. [render]
class EventListBefore : public Steinberg::Vst::IEventList {
public:
    explicit EventListBefore(Steinberg::Vst::IEventList* hosts) : hosts_(hosts) {}
    EventListBefore(const EventListBefore&) = delete;
    EventListBefore& operator=(const EventListBefore&) = delete;

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override;
    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }
    Steinberg::uint32 PLUGIN_API release() override { return 1; }

    Steinberg::int32 PLUGIN_API getEventCount() override;
    Steinberg::tresult PLUGIN_API getEvent(Steinberg::int32 index, Steinberg::Vst::Event& event) override;
    Steinberg::tresult PLUGIN_API addEvent(Steinberg::Vst::Event& event) override;

protected:
    ~EventListBefore() = default;

private:
    Steinberg::Vst::IEventList* hosts_;
};

/// What the host gives, without system exclusive that is too long for JUCE's buffer: that counts in 16 bits,
/// and would be read without end.
class IncomingEvents final : public EventListBefore {
public:
    using EventListBefore::EventListBefore;

    Steinberg::tresult PLUGIN_API getEvent(Steinberg::int32 index, Steinberg::Vst::Event& event) override;
};

/// What goes to the host, with poly pressure as the event that the format has for it. JUCE's wrapper sends it
/// as a controller, which hosts do not look for.
class OutgoingEvents final : public EventListBefore {
public:
    using EventListBefore::EventListBefore;

    Steinberg::tresult PLUGIN_API addEvent(Steinberg::Vst::Event& event) override;
};

}  // namespace quillo
