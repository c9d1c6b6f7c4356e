// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/Descriptor.hpp"

#include <unistd.h>

namespace quillo {

Descriptor::~Descriptor() {
    if (isOpen()) {
        ::close(number_);
    }
}

}  // namespace quillo
