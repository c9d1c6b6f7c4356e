// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/VST3View.hpp"

#include <poll.h>

#include <algorithm>
#include <stdexcept>

#include <X11/Xlib.h>

namespace quillo::test {

using namespace Steinberg;

namespace {

void require(tresult result, const char* what) {
    if (result != kResultOk) {
        throw std::runtime_error(std::string("the view refuses ") + what);
    }
}

}  // namespace

struct VST3View::Window {
    Window(int x, int y) : display(XOpenDisplay(nullptr)) {
        if (display == nullptr) {
            throw std::runtime_error("there is no display");
        }
        window = XCreateSimpleWindow(display, DefaultRootWindow(display), x, y, 100, 100, 0, 0, 0);
        XMapWindow(display, window);
        XSync(display, False);
    }
    ~Window() { XCloseDisplay(display); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    Display* display;
    ::Window window = 0;
};

tresult VST3RunLoop::registerEventHandler(Linux::IEventHandler* handler, Linux::FileDescriptor descriptor) {
    handlers_.emplace_back(handler, descriptor);
    return kResultOk;
}

tresult VST3RunLoop::unregisterEventHandler(Linux::IEventHandler* handler) {
    std::erase_if(handlers_, [handler](const auto& entry) { return entry.first == handler; });
    return kResultOk;
}

tresult VST3RunLoop::registerTimer(Linux::ITimerHandler* /*handler*/, Linux::TimerInterval /*milliseconds*/) {
    return kNotImplemented;
}

tresult VST3RunLoop::unregisterTimer(Linux::ITimerHandler* /*handler*/) {
    return kNotImplemented;
}

bool VST3RunLoop::turn(int milliseconds) {
    const auto handlers = handlers_;
    std::vector<pollfd> polled;
    for (const auto& [handler, descriptor] : handlers) {
        polled.push_back({descriptor, POLLIN, 0});
    }
    if (poll(polled.data(), polled.size(), milliseconds) <= 0) {
        return false;
    }
    for (std::size_t i = 0; i < handlers.size(); ++i) {
        const bool isStillThere = std::ranges::find(handlers_, handlers[i]) != handlers_.end();
        if (polled[i].revents != 0 && isStillThere) {
            handlers[i].first->onFDIsSet(handlers[i].second);
        }
    }
    return true;
}

VST3View::VST3View(VST3Instance& plugIn, VST3RunLoop& loop, int x, int y)
    : loop_(loop),
      window_(std::make_unique<Window>(x, y)),
      view_(plugIn.controller().createView(Vst::ViewType::kEditor)) {
    if (view_ == nullptr) {
        throw std::runtime_error("the plug-in has no view");
    }
    require(view_->isPlatformTypeSupported(kPlatformTypeX11EmbedWindowID), "X windows");
    require(view_->setFrame(this), "a frame");
    require(view_->attached(reinterpret_cast<void*>(window_->window), kPlatformTypeX11EmbedWindowID),
            "to be attached");
    auto wanted = size();
    require(resizeView(view_, &wanted), "its own size");
    settle();
}

VST3View::~VST3View() {
    view_->removed();
    view_->setFrame(nullptr);
    view_->release();
}

tresult VST3View::queryInterface(const TUID id, void** object) {
    if (HostSide<IPlugFrame>::queryInterface(id, object) == kResultOk) {
        return kResultOk;
    }
    return loop_.queryInterface(id, object);
}

tresult VST3View::resizeView(IPlugView* view, ViewRect* size) {
    XResizeWindow(window_->display, window_->window, static_cast<unsigned>(size->getWidth()),
                  static_cast<unsigned>(size->getHeight()));
    XSync(window_->display, False);
    return view->onSize(size);
}

ViewRect VST3View::size() {
    ViewRect rectangle;
    require(view_->getSize(&rectangle), "to tell its size");
    return rectangle;
}

void VST3View::resize(std::int32_t width, std::int32_t height) {
    ViewRect rectangle(0, 0, width, height);
    require(view_->checkSizeConstraint(&rectangle), "to check a size");
    require(resizeView(view_, &rectangle), "a size");
    settle();
}

void VST3View::setScale(float scale) {
    void* found = nullptr;
    require(view_->queryInterface(IPlugViewContentScaleSupport::iid, &found), "to be scaled");
    auto* scaled = static_cast<IPlugViewContentScaleSupport*>(found);
    require(scaled->setContentScaleFactor(scale), "a scale");
    scaled->release();
    settle();
}

void VST3View::destroyWindow() {
    XDestroyWindow(window_->display, window_->window);
    XSync(window_->display, False);
}

unsigned long VST3View::thePlugInsWindow() const {
    ::Window root = 0;
    ::Window parent = 0;
    ::Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(window_->display, window_->window, &root, &parent, &children, &count);
    if (count != 1) {
        throw std::runtime_error("the plug-in has " + std::to_string(count) + " windows");
    }
    const auto window = children[0];
    XFree(children);
    return window;
}

std::pair<unsigned, unsigned> VST3View::sizeOfThePlugInsWindow() const {
    ::Window root = 0;
    int x = 0;
    int y = 0;
    unsigned border = 0;
    unsigned depth = 0;
    std::pair<unsigned, unsigned> size;
    XGetGeometry(window_->display, thePlugInsWindow(), &root, &x, &y, &size.first, &size.second, &border,
                 &depth);
    return size;
}

void VST3View::giveKeyboardToTheEditor() {
    XSetInputFocus(window_->display, thePlugInsWindow(), RevertToParent, CurrentTime);
    settle();
}

void VST3View::settle() {
    XSync(window_->display, False);
    while (loop_.turn(0)) {
    }
}

}  // namespace quillo::test
