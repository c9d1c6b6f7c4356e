// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/WakeDescriptor.hpp"

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>

namespace quillo {

WakeDescriptor::WakeDescriptor() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!descriptor_.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "no event descriptor");
    }
}

void WakeDescriptor::wake() const noexcept {
    static_cast<void>(::eventfd_write(number(), 1));
}

void WakeDescriptor::clear() const noexcept {
    eventfd_t wakes = 0;
    static_cast<void>(::eventfd_read(number(), &wakes));
}

}  // namespace quillo
