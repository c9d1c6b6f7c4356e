// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Descriptor.hpp"

#include <unistd.h>

namespace quillo {

Descriptor::~Descriptor() {
    close();
}

bool Descriptor::close() {
    return !isOpen() || ::close(std::exchange(number_, -1)) == 0;
}

}  // namespace quillo
