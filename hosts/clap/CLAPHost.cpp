// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPHost.hpp"

namespace quillo {

namespace {

template <class Extension>
const Extension* extensionOf(const clap_host_t& host, const char* name) {
    const auto* extension = host.get_extension == nullptr ? nullptr : host.get_extension(&host, name);
    return static_cast<const Extension*>(extension);
}

}  // namespace

CLAPHost::CLAPHost(const clap_host_t& host)
    : host_(host),
      state_(extensionOf<clap_host_state_t>(host, CLAP_EXT_STATE)),
      timers_(extensionOf<clap_host_timer_support_t>(host, CLAP_EXT_TIMER_SUPPORT)) {}

void CLAPHost::markDirty() const {
    if (state_ != nullptr && state_->mark_dirty != nullptr) {
        state_->mark_dirty(&host_);
    }
}

void CLAPHost::requestProcess() const {
    if (host_.request_process != nullptr) {
        host_.request_process(&host_);
    }
}

void CLAPHost::requestCallback() const {
    if (host_.request_callback != nullptr) {
        host_.request_callback(&host_);
    }
}

std::optional<clap_id> CLAPHost::startTimer(std::uint32_t milliseconds) const {
    clap_id timer = 0;
    if (timers_ == nullptr || timers_->register_timer == nullptr || timers_->unregister_timer == nullptr ||
        !timers_->register_timer(&host_, milliseconds, &timer)) {
        return std::nullopt;
    }
    return timer;
}

void CLAPHost::stopTimer(clap_id timer) const {
    timers_->unregister_timer(&host_, timer);
}

}  // namespace quillo
