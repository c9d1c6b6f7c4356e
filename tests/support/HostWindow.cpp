// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HostWindow.hpp"

#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace quillo::test {

namespace {

int refusalsHeard = 0;

int countRefusal(Display* /*display*/, XErrorEvent* /*error*/) {
    ++refusalsHeard;
    return 0;
}

}  // namespace

struct HostWindow::Connection {
    Display* display = XOpenDisplay(nullptr);
    Window window = 0;

    void await(int type) const {
        XEvent event;
        do {
            XWindowEvent(display, window, StructureNotifyMask | FocusChangeMask, &event);
        } while (event.type != type);
    }
};

HostWindow::HostWindow(int x, int y, unsigned width, unsigned height)
    : connection_(std::make_unique<Connection>()) {
    auto* display = connection_->display;
    if (display == nullptr) {
        throw std::runtime_error("there is no display");
    }
    refusalsHeard = 0;
    XSetErrorHandler(countRefusal);
    connection_->window = XCreateSimpleWindow(display, DefaultRootWindow(display), x, y, width, height, 0, 0,
                                              WhitePixel(display, DefaultScreen(display)));
    XSelectInput(display, connection_->window, StructureNotifyMask | FocusChangeMask | KeyPressMask);
    XMapWindow(display, connection_->window);
    connection_->await(MapNotify);
    XSetInputFocus(display, connection_->window, RevertToParent, CurrentTime);
    connection_->await(FocusIn);
}

HostWindow::~HostWindow() {
    XCloseDisplay(connection_->display);
}

HostWindow::Handle HostWindow::handle() const {
    return connection_->window;
}

std::vector<HostWindow::Handle> HostWindow::children() const {
    Window root = 0;
    Window parent = 0;
    Window* windows = nullptr;
    unsigned count = 0;
    XQueryTree(connection_->display, connection_->window, &root, &parent, &windows, &count);
    std::vector<Handle> children(windows, windows + count);
    XFree(windows);
    return children;
}

HostWindow::Geometry HostWindow::geometryOf(Handle window) const {
    Window root = 0;
    unsigned border = 0;
    unsigned depth = 0;
    Geometry geometry;
    XGetGeometry(connection_->display, window, &root, &geometry.x, &geometry.y, &geometry.width,
                 &geometry.height, &border, &depth);
    return geometry;
}

void HostWindow::resize(Handle window, unsigned width, unsigned height) {
    XResizeWindow(connection_->display, window, width, height);
    XSync(connection_->display, False);
}

HostWindow::Colour HostWindow::colourAt(Handle window, int x, int y) const {
    auto* image = XGetImage(connection_->display, window, x, y, 1, 1, AllPlanes, ZPixmap);
    if (image == nullptr) {
        throw std::runtime_error("the screen shows nothing there");
    }
    const auto pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return {static_cast<std::uint8_t>(pixel >> 16U), static_cast<std::uint8_t>(pixel >> 8U),
            static_cast<std::uint8_t>(pixel)};
}

HostWindow::Handle HostWindow::keyboardOwner() const {
    Window owner = 0;
    int revertTo = 0;
    XGetInputFocus(connection_->display, &owner, &revertTo);
    return owner;
}

void HostWindow::giveKeyboardTo(Handle window) {
    XSetInputFocus(connection_->display, window, RevertToParent, CurrentTime);
    XSync(connection_->display, False);
}

std::vector<unsigned long> HostWindow::takeKeys() {
    XSync(connection_->display, False);
    std::vector<unsigned long> keys;
    XEvent event;
    while (XCheckTypedWindowEvent(connection_->display, connection_->window, KeyPress, &event) != 0) {
        keys.push_back(XLookupKeysym(&event.xkey, 0));
    }
    return keys;
}

void HostWindow::destroy() {
    XDestroyWindow(connection_->display, connection_->window);
    XSync(connection_->display, False);
}

void HostWindow::killOwnerOf(Handle window) {
    XKillClient(connection_->display, window);
    XSync(connection_->display, False);
}

void HostWindow::offend() {
    XMapWindow(connection_->display, 1);
    XSync(connection_->display, False);
}

int HostWindow::refusals() {
    return refusalsHeard;
}

}  // namespace quillo::test
