// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/gui/iplugviewcontentscalesupport.h>

#include "hosts/vst3/VST3Host.hpp"

namespace quillo::test {

/// The host's event loop, which the plug-in's views ride on.
class VST3RunLoop final : public HostSide<Steinberg::Linux::IRunLoop> {
public:
    Steinberg::tresult PLUGIN_API registerEventHandler(Steinberg::Linux::IEventHandler* handler,
                                                       Steinberg::Linux::FileDescriptor descriptor) override;
    Steinberg::tresult PLUGIN_API unregisterEventHandler(Steinberg::Linux::IEventHandler* handler) override;
    Steinberg::tresult PLUGIN_API registerTimer(Steinberg::Linux::ITimerHandler* handler,
                                                Steinberg::Linux::TimerInterval milliseconds) override;
    Steinberg::tresult PLUGIN_API unregisterTimer(Steinberg::Linux::ITimerHandler* handler) override;

    /// Waits until there is something to do, at most so long, and does it. False when nothing came.
    bool turn(int milliseconds);

    [[nodiscard]] bool isEmpty() const { return handlers_.empty(); }

private:
    std::vector<std::pair<Steinberg::Linux::IEventHandler*, Steinberg::Linux::FileDescriptor>> handlers_;
};

/// A window of the host with the plug-in's view in it. The run loop outlives it.
class VST3View final : public HostSide<Steinberg::IPlugFrame> {
public:
    /// At this place of the screen, as large as the view wants to be.
    VST3View(VST3Instance& plugIn, VST3RunLoop& loop, int x = 0, int y = 0);
    ~VST3View();

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID id, void** object) override;
    Steinberg::tresult PLUGIN_API resizeView(Steinberg::IPlugView* view, Steinberg::ViewRect* size) override;

    [[nodiscard]] Steinberg::IPlugView& view() { return *view_; }
    [[nodiscard]] Steinberg::ViewRect size();

    /// The host's user drags the window to this size.
    void resize(std::int32_t width, std::int32_t height);

    /// What the host says of its screen.
    void setScale(float scale);

    /// The host destroys its window, and the plug-in's in it, before it has the view removed.
    void destroyWindow();

    /// The size of the plug-in's own window inside the host's.
    [[nodiscard]] std::pair<unsigned, unsigned> sizeOfThePlugInsWindow() const;

    /// The host gives the keyboard to the plug-in's own window.
    void giveKeyboardToTheEditor();

    /// Lets everything happen that has been asked for.
    void settle();

private:
    struct Window;

    [[nodiscard]] unsigned long thePlugInsWindow() const;

    VST3RunLoop& loop_;
    std::unique_ptr<Window> window_;
    Steinberg::IPlugView* view_;
};

}  // namespace quillo::test
